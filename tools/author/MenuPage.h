// One menu page of a disc, read through CMenuTemplate: its standard, music and buttons in
// disc order (the numbered buttons of the current layout by index, then previous and next when
// the page enables them), and its rendering into a folder of the disc. Reading and rendering
// work on a scratch copy of the template, so the user's file and folder are left as they are.
#ifndef TOLVEX_TOOLS_AUTHOR_MENUPAGE_H
#define TOLVEX_TOOLS_AUTHOR_MENUPAGE_H

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
  Standard standard;
  std::string music;  // full path, empty when none
  std::vector<PageButton> buttons;

  std::vector<unsigned> NumberedIndexes() const;
  // 1-based button number of the first button of `kind`, or 0 when the page has none.
  size_t NumberOf(ButtonKind kind) const;
};

// Reads the page; throws ToolError for an unreadable template or more than kMaxButtons buttons.
MenuPage ReadMenuPage(const std::string& given);

// Renders the page's menu picture and mask into `picture` and `mask` (BMP) through
// CMenuTemplate::CreateMenuBMP and CreateMaskBMP. Throws ToolError when rendering fails.
void RenderMenuPage(const MenuPage& page, const std::string& picture, const std::string& mask);

// Writes `png`: the mask's marked pixels in `colour`, everything else transparent, as spumux
// takes a highlight or select picture.
void WriteButtonPicture(const std::string& mask, Rgb colour, const std::string& png);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_MENUPAGE_H
