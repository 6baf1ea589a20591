// Titles in the renderer's model, measured with its text layout (see PageTitles.h).
#include "tools/check/PageTitles.h"

#include "renderer/TitleText.h"

#include "tools/page/AsciiCase.h"

#include <algorithm>

namespace menutool {
namespace render = tolvex::render;
namespace {

const Reading* Short(const std::vector<Reading>& readings, const std::string& name) {
  for (const Reading& r : readings)
    if (r.property->ShortName() == name) return r.found ? &r : nullptr;
  return nullptr;
}

}  // namespace

render::Title TitleOf(const std::vector<Reading>& readings, const std::string& text) {
  render::Title title;
  title.text = text;
  if (const Reading* at = Short(readings, "title.position")) {
    title.hasPosition = true;
    title.x = static_cast<int>(at->values[0].number);
    title.y = static_cast<int>(at->values[1].number);
  }
  if (const Reading* font = Short(readings, "title.font.name")) title.fontName = font->values[0].text;
  if (const Reading* size = Short(readings, "title.font.size")) {
    const long long px = size->values[0].number;
    if (px > 0) title.sizePx = static_cast<int>(std::min<long long>(px, render::kMaxTitleSizePx));
  }
  if (const Reading* style = Short(readings, "title.font.style")) {
    title.italic = style->values[0].number != 0;
    title.bold = style->values[1].number != 0;
    title.underline = style->values[2].number != 0;
  }
  return title;
}

render::Rect TitleBox(const render::Title& title, const render::Rect& area) {
  return render::TitleInk(title, area);
}

std::optional<std::string> FontStandIn(const render::Title& title) {
  if (title.fontName.empty()) return std::nullopt;
  const std::string used = render::FontFamilyUsed(title);
  if (EqualIgnoringCase(used, title.fontName)) return std::nullopt;
  // Generic names stand for whatever fontconfig chooses.
  for (const char* generic : {"sans", "sans-serif", "serif", "monospace", "mono"})
    if (EqualIgnoringCase(title.fontName, generic)) return std::nullopt;
  return used.empty() ? "no font at all" : used;
}

}  // namespace menutool
