// The highlight and select colours of a disc's menus when the user names none: two colours
// from a fixed set of bright ones, chosen to differ most from the frame colours the menu
// pictures already show, so that a highlighted button stands out from the others.
#ifndef TOLVEX_TOOLS_AUTHOR_COLOURS_H
#define TOLVEX_TOOLS_AUTHOR_COLOURS_H

#include "tools/author/MenuPage.h"

#include <vector>

namespace menutool::author {

struct ButtonColours {
  Rgb highlight;
  Rgb select;
};

// `frames` are the frame colours of every button of every page.
ButtonColours ChooseColours(const std::vector<Rgb>& frames);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_COLOURS_H
