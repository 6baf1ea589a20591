// Scaling a page between the NTSC and PAL canvases (see Rescale.h).
#include "tools/page/Rescale.h"

#include <algorithm>
#include <cmath>

namespace menutool {
namespace {

const Reading* Found(const std::vector<Reading>& readings, const std::string& name) {
  for (const Reading& r : readings)
    if (r.property->name == name) return r.found ? &r : nullptr;
  return nullptr;
}

// The lowest bottom edge of every rectangle on the page (numbered buttons of every layout,
// previous and next buttons that are shown); nullopt when there is none.
std::optional<long long> LowestEdge(const PageReading& page) {
  std::optional<long long> lowest;
  auto take = [&](const Reading* rect) {
    if (!rect) return;
    long long bottom = std::max(rect->values[1].number, rect->values[3].number);
    lowest = std::max(lowest.value_or(bottom), bottom);
  };
  for (unsigned nav : {0u, 1u}) {
    const Reading* enabled = Found(page.nav[nav], "nav.enabled");
    if (enabled && enabled->values[0].number) take(Found(page.nav[nav], "nav.rect"));
  }
  for (const LayoutReading& layout : page.layouts)
    for (const ButtonReading& button : layout.buttons) take(button.Find("button.rect"));
  return lowest;
}

// `y` on a canvas `to` tall, from one `from` tall, on an even line.
int32_t Scale(long long y, int from, int to) {
  double scaled = static_cast<double>(y) * to / from;
  return static_cast<int32_t>(2 * std::llround(scaled / 2));
}

}  // namespace

std::optional<std::string> SizedForOtherStandard(const PageReading& page, const Canvas& canvas) {
  std::optional<long long> lowest = LowestEdge(page);
  if (!lowest) return std::nullopt;
  const Canvas ntsc = Canvas::Ntsc(), pal = Canvas::Pal();
  if (canvas.height == pal.height && *lowest <= ntsc.SafeArea().bottom &&
      *lowest > ntsc.SafeArea().bottom * 3 / 4)
    return "the buttons end at line " + std::to_string(*lowest) + " of " +
           std::to_string(pal.height) + ": the layout looks sized for NTSC (720x480)";
  if (canvas.height == ntsc.height && *lowest > ntsc.height && *lowest <= pal.height)
    return "the buttons end at line " + std::to_string(*lowest) + ", below the " +
           std::to_string(ntsc.height) + " lines of NTSC: the layout looks sized for PAL (720x576)";
  return std::nullopt;
}

bool RescalePage(CMenuTemplate& menu, const PageReading& page, const Canvas& from,
                 const Canvas& to) {
  auto rect = [&](const Reading& r) {
    tagRECT out{};
    out.left = static_cast<int32_t>(r.values[0].number);
    out.top = Scale(r.values[1].number, from.height, to.height);
    out.right = static_cast<int32_t>(r.values[2].number);
    out.bottom = Scale(r.values[3].number, from.height, to.height);
    return out;
  };
  auto point = [&](const Reading& r) {
    tagPOINT out{};
    out.x = static_cast<int32_t>(r.values[0].number);
    out.y = Scale(r.values[1].number, from.height, to.height);
    return out;
  };
  if (const Reading* title = page.FindPage("title.position"))
    if (!menu.SetBkTitlePosition(point(*title))) return false;
  for (unsigned nav : {0u, 1u})
    if (const Reading* r = Found(page.nav[nav], "nav.rect"))
      if (!menu.SetNavBtnPosition(nav, rect(*r))) return false;
  // Layouts are reached by switching the current count, which can only be put back when
  // there was one.
  if (!page.layoutInUse) return true;
  for (const LayoutReading& layout : page.layouts) {
    if (layout.buttons.empty()) continue;
    if (!menu.SetCurrentNumOfButtons(static_cast<unsigned>(layout.count))) return false;
    for (const ButtonReading& button : layout.buttons) {
      if (const Reading* r = button.Find("button.rect"))
        if (!menu.SetBtnPosition(button.index, rect(*r))) return false;
      if (const Reading* r = button.Find("button.title.position"))
        if (!menu.SetBtnTitlePosition(button.index, point(*r))) return false;
    }
  }
  return menu.SetCurrentNumOfButtons(static_cast<unsigned>(*page.layoutInUse)) != 0;
}

}  // namespace menutool
