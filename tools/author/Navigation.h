// Where the arrow keys lead from each button of a DVD menu page. The links come from the
// buttons' navigation values (r row, c column) where both buttons have them, and from the
// buttons' rectangles otherwise; the result always lets every button be reached from every
// other. Pure computation on plain data.
#ifndef TOLVEX_TOOLS_AUTHOR_NAVIGATION_H
#define TOLVEX_TOOLS_AUTHOR_NAVIGATION_H

#include <tolvex/WinTypes.h>

#include <optional>
#include <vector>

namespace menutool::author {

struct GridPlace {
  unsigned row;
  unsigned column;
};

struct NavButton {
  tagRECT rect;                 // right and bottom exclusive
  std::optional<GridPlace> at;  // the navigation values, when the template has them
};

// Indexes into the button list the links were derived from.
struct Links {
  size_t up, down, left, right;
};

// The links of every button, in the order of `buttons`:
//  - A button without navigation values takes the row of the buttons with values level with it
//    and the column of those above or below it (else the column beside the nearest button of
//    its row), when both are found and the place is free.
//  - Between two buttons that both have navigation values (given or so found), up and down go
//    to the nearest row above or below (the nearest column within it), left and right to the
//    nearest column of the same row.
//  - Where that finds nothing, the nearest button whose centre lies in that direction, judged
//    by the rectangles (distance across the direction counts double).
//  - Left from a leftmost button goes to the button before it in list order, right from a
//    rightmost one to the button after it (wrapping), so left and right alone walk every
//    button; up from a top button and down from a bottom one stay.
//  - Should the links still leave a button out of reach of another, left and right follow the
//    list order instead.
std::vector<Links> DeriveLinks(const std::vector<NavButton>& buttons);

// Whether every button can be reached from every other through `links`.
bool AllReachable(const std::vector<Links>& links);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_NAVIGATION_H
