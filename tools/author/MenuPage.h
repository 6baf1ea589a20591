// One menu page of a disc, read through CMenuTemplate: its standard, music and buttons in
// disc order (the numbered buttons of the current layout by index, then previous and next when
// the disc has several pages), and its rendering into a folder of the disc. Reading and
// rendering work on a copy of the template in that folder, so the user's file and folder are
// left as they are.
#ifndef TOLVEX_TOOLS_AUTHOR_MENUPAGE_H
#define TOLVEX_TOOLS_AUTHOR_MENUPAGE_H

#include "tools/preview/MaskAreas.h"
#include "tools/author/Navigation.h"
#include "tools/author/Video.h"

#include <string>
#include <vector>

namespace menutool::author {

// The DVD limit of buttons on one menu.
constexpr size_t kMaxButtons = 36;

struct Rgb {
  unsigned r, g, b;
};

enum class ButtonKind { kNumbered, kPrevious, kNext };

struct PageButton {
  ButtonKind kind;
  unsigned index;  // numbered buttons: the template's button index
  NavButton nav;
  std::optional<Rgb> frame;
};

struct MenuPage {
  std::string given;  // the template as named on the command line
  std::string copy;   // the prepared copy that is rendered
  std::string picture, mask;  // where the copy renders to
  std::string note;   // what preparing changed, for the user; empty when nothing
  Standard standard;
  std::string music;  // full path, empty when none
  std::vector<PageButton> buttons;

  std::vector<unsigned> NumberedIndexes() const;
  // 1-based button number of the first button of `kind`, or 0 when the page has none.
  size_t NumberOf(ButtonKind kind) const;
};

// Copies the template `given` to `copy` (in the disc's staging folder) and reads the page from
// the copy, which is what gets rendered: its picture, music and button names made absolute, its
// outputs beside it, previous and next shown when the disc has several pages (`linked`; placed
// at the bottom corners of the title-safe area when the template has no free place for them)
// and hidden on a disc of one page. The user's template is only read. Throws ToolError for an
// unreadable template, more than kMaxButtons buttons or no room for previous and next.
MenuPage PrepareMenuPage(const std::string& given, const std::string& copy, bool linked);

// Renders the page's menu picture and mask (page.picture, page.mask) from its copy through
// CMenuTemplate::CreateMenuBMP and CreateMaskBMP. Throws ToolError when rendering fails.
void RenderMenuPage(const MenuPage& page);

// Writes `png`: the mask's marked pixels in `colour`, everything else transparent, as spumux
// takes a highlight or select picture.
void WriteButtonPicture(const MaskAreas& mask, Rgb colour, const std::string& png);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_MENUPAGE_H
