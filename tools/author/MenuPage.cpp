// Reading and rendering one menu page (see MenuPage.h).
#include "tools/author/MenuPage.h"

#include "tools/layout/Canvas.h"
#include "tools/layout/Grid.h"
#include "tools/page/Properties.h"
#include "tools/page/RawProfile.h"
#include "tools/page/TemplatePath.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"

#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/MenuTemplate.h>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

namespace menutool::author {
namespace {

namespace fs = std::filesystem;

tagRECT Normal(const tagRECT& r) {
  return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
          std::max(r.top, r.bottom)};
}

std::optional<Rgb> Colour(int found, unsigned r, unsigned g, unsigned b) {
  if (!found) return std::nullopt;
  return Rgb{r, g, b};
}

// Picture and music names in the page's copy made absolute, since the copy lives in another
// folder.
class Absolute {
 public:
  Absolute(const TemplatePath& original, CMenuTemplate* menu) : m_path(original), m_menu(menu) {}
  template <class Get, class Set, class... Where>
  void operator()(Get get, Set set, Where... where) {
    CString name;
    if (!(m_menu->*get)(where..., &name) || name.GetLength() == 0) return;
    const std::string full = fs::absolute(m_path.Resolve(name.GetString())).string();
    if (!(m_menu->*set)(where..., CString(full.c_str())))
      throw ToolError(m_path.given(), "cannot prepare the template for rendering");
  }

 private:
  const TemplatePath& m_path;
  CMenuTemplate* m_menu;
};

// Adds `button` to `page` when its position can be read, with its grid place and frame colour
// where set. The getters are a numbered button's or a previous/next button's, which the library
// keeps apart; `button.index` addresses both.
template <class Position, class Grid, class Frame>
void ReadButton(CMenuTemplate* menu, PageButton button, Position position, Grid grid, Frame frame,
                MenuPage* page) {
  if (!(menu->*position)(button.index, &button.nav.rect)) return;
  button.nav.rect = Normal(button.nav.rect);
  unsigned r = 0, c = 0, red = 0, green = 0, blue = 0;
  if ((menu->*grid)(button.index, &r, &c)) button.nav.at = GridPlace{r, c};
  button.frame = Colour((menu->*frame)(button.index, &red, &green, &blue), red, green, blue);
  page->buttons.push_back(button);
}

struct PixbufFree {
  void operator()(GdkPixbuf* p) const { g_object_unref(p); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, PixbufFree>;

}  // namespace

std::vector<unsigned> MenuPage::NumberedIndexes() const {
  std::vector<unsigned> indexes;
  for (const PageButton& b : buttons)
    if (b.kind == ButtonKind::kNumbered) indexes.push_back(b.index);
  return indexes;
}

size_t MenuPage::NumberOf(ButtonKind kind) const {
  for (size_t i = 0; i < buttons.size(); ++i)
    if (buttons[i].kind == kind) return i + 1;
  return 0;
}

namespace {

// Reads the page from the template at `file` (the prepared copy).
MenuPage ReadPage(const std::string& given, const std::string& file) {
  TemplatePath path(file);
  TemplateSession session(path, TemplateSession::Purpose::kRead);
  CMenuTemplate& menu = session.menu();
  MenuPage page;
  page.given = given;
  page.copy = file;
  int ntsc = 0;  // the renderer draws PAL when the mode is missing
  menu.GetTemplateMode(&ntsc);
  page.standard = ntsc ? Standard::kNtsc : Standard::kPal;
  CString music;
  if (menu.GetMusicFileName(&music) && music.GetLength() > 0)
    page.music = fs::absolute(path.Resolve(music.GetString())).string();

  using C = CMenuTemplate;
  // The numbered buttons the renderer draws: every index of the current layout with a position.
  unsigned count = 0;
  if (menu.GetCurrentNumOfButtons(&count)) {
    std::set<unsigned> indexes;
    for (const std::string& key :
         KeyNames(session.path(), "NumOfButton" + std::to_string(static_cast<int>(count))))
      if (auto index = ButtonIndexOfKey(key)) indexes.insert(*index);
    for (unsigned index : indexes)
      ReadButton(&menu, {ButtonKind::kNumbered, index, {}, std::nullopt}, &C::GetBtnPosition,
                 &C::GetBtnNavInfo, &C::GetBtnFrameRGB, &page);
  }
  for (unsigned nav : {0u, 1u}) {
    int enabled = 0;
    if (!(nav ? menu.GetAddNextButton(&enabled) : menu.GetAddPrevButton(&enabled)) || !enabled)
      continue;
    ReadButton(&menu, {nav ? ButtonKind::kNext : ButtonKind::kPrevious, nav, {}, std::nullopt},
               &C::GetNavBtnPosition, &C::GetNavInfo, &C::GetNavBtnFrameRGB, &page);
  }
  if (page.buttons.size() > kMaxButtons)
    throw ToolError(given, std::to_string(page.buttons.size()) + " buttons on the page; a DVD menu "
                           "takes at most " + std::to_string(kMaxButtons));
  return page;
}

// Whether `place` lies on the canvas, clear (by a band's width and more) of every numbered
// button.
bool Free(const tagRECT& place, const MenuPage& page, const Canvas& canvas) {
  constexpr int kClearance = 8;
  if (!IsProper(place) || !canvas.Contains(place)) return false;
  for (const PageButton& b : page.buttons) {
    if (b.kind != ButtonKind::kNumbered) continue;
    const tagRECT& r = b.nav.rect;
    const tagRECT grown{r.left - kClearance, r.top - kClearance, r.right + kClearance,
                        r.bottom + kClearance};
    if (Overlap(place, grown)) return false;
  }
  return true;
}

// Shows previous and next in the copy: where the template puts them when that place is free,
// else at the bottom corners of the title-safe area, as `new --nav` lays a page out. Returns a
// line saying so when they were moved.
std::string PlaceNavButtons(CMenuTemplate* menu, const MenuPage& page) {
  const Canvas canvas = Canvas::For(page.standard == Standard::kNtsc);
  const PagePlan plan = PlanPage(1, canvas, true);
  std::string moved;
  for (unsigned nav : {0u, 1u}) {
    tagRECT place{};
    const bool placed = menu->GetNavBtnPosition(nav, &place) && Free(Normal(place), page, canvas);
    if (!placed) {
      place = nav ? plan.next : plan.prev;
      if (!Free(place, page, canvas))
        throw ToolError(page.given, "has no free place for the previous and next buttons that a "
                                    "disc of several pages needs (new --nav lays a page out "
                                    "with room for them)");
      if (!menu->SetNavBtnPosition(nav, place))
        throw ToolError(page.given, "cannot prepare the template for rendering");
      moved = "previous and next placed at the bottom corners";
    }
    if (!(nav ? menu->SetAddNextButton(1) : menu->SetAddPrevButton(1)))
      throw ToolError(page.given, "cannot prepare the template for rendering");
  }
  return moved;
}

}  // namespace

MenuPage PrepareMenuPage(const std::string& given, const std::string& copy, bool linked) {
  TemplatePath path(given);
  path.RequireReadable();
  CMenuTemplate menu;
  menu.CopyTemplateFile(CString(copy.c_str()), CString(path.library().c_str()));
  if (!fs::is_regular_file(copy))
    throw ToolError(given, "cannot copy the template to " + copy);
  menu.SetTemplateFile(CString(copy.c_str()));
  std::string note;
  if (linked) {
    note = PlaceNavButtons(&menu, ReadPage(given, copy));
  } else {
    int shown = 0;
    if ((menu.GetAddPrevButton(&shown) && shown) || (menu.GetAddNextButton(&shown) && shown))
      note = "previous and next hidden: a disc of one page has no other page to go to";
    if (!menu.SetAddPrevButton(0) || !menu.SetAddNextButton(0))
      throw ToolError(given, "cannot prepare the template for rendering");
  }
  MenuPage page = ReadPage(given, copy);
  page.note = note;

  using C = CMenuTemplate;
  Absolute absolute(path, &menu);
  absolute(&C::GetFileName, &C::SetBkBMPFileName);
  absolute(&C::GetMusicFileName, &C::SetMusicFileName);
  for (unsigned nav : {0u, 1u}) {
    absolute(&C::GetNavBtnFrameBMP, &C::SetNavBtnFrameBMP, nav);
    absolute(&C::GetNavBtnBMPFile, &C::SetNavBtnBMPFile, nav);
  }
  for (const PageButton& button : page.buttons) {
    if (button.kind != ButtonKind::kNumbered) continue;
    absolute(&C::GetBtnFrameBMP, &C::SetBtnFrameBMP, button.index);
    absolute(&C::GetBtnBMP, &C::SetBtnBMP, button.index);
  }
  CString music;
  if (menu.GetMusicFileName(&music) && music.GetLength() > 0) page.music = music.GetString();
  const fs::path base = fs::path(copy).replace_extension();
  page.picture = base.string() + ".bmp";
  page.mask = base.string() + "-mask.bmp";
  // Named from the copy's folder, where they are written.
  const std::string pictureName = fs::path(page.picture).filename().string();
  const std::string maskName = fs::path(page.mask).filename().string();
  if (!menu.SetOutputBMPFile(CString(pictureName.c_str())) ||
      !menu.SetOutMaskFile(CString(maskName.c_str())))
    throw ToolError(given, "cannot prepare the template for rendering");
  return page;
}

void RenderMenuPage(const MenuPage& page) {
  CMenuTemplate menu{CString(page.copy.c_str())};
  if (menu.CreateMenuBMP().GetLength() == 0)
    throw ToolError(page.given, std::string("the menu picture could not be rendered: ") +
                                    TolvexMenuBmpLastError());
  if (menu.CreateMaskBMP().GetLength() == 0)
    throw ToolError(page.given, std::string("the mask could not be rendered: ") +
                                    TolvexMenuMaskLastError());
}

void WriteButtonPicture(const MaskAreas& mask, Rgb colour, const std::string& png) {
  Pixbuf out(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, mask.width, mask.height));
  if (!out) throw ToolError(png, "out of memory");
  guchar* target = gdk_pixbuf_get_pixels(out.get());
  const int outStride = gdk_pixbuf_get_rowstride(out.get());
  for (int y = 0; y < mask.height; ++y)
    for (int x = 0; x < mask.width; ++x) {
      guchar* q = target + y * outStride + x * 4;
      q[0] = static_cast<guchar>(colour.r);
      q[1] = static_cast<guchar>(colour.g);
      q[2] = static_cast<guchar>(colour.b);
      q[3] = mask.Marked(x, y) ? 255 : 0;
    }
  GError* error = nullptr;
  if (!gdk_pixbuf_save(out.get(), png.c_str(), "png", &error, nullptr)) {
    std::string why = error ? error->message : "cannot write";
    if (error) g_error_free(error);
    throw ToolError(png, why);
  }
}

}  // namespace menutool::author
