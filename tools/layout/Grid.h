// How `new` arranges a page: the page title at the top of the title-safe area, the previous
// and next buttons at its bottom corners, and N numbered buttons in a centred grid between,
// each a 16:9 box with its title below it, all on even lines.
#ifndef TOLVEX_TOOLS_GRID_H
#define TOLVEX_TOOLS_GRID_H

#include "tools/layout/Canvas.h"

#include <vector>

namespace menutool {

struct ButtonPlace {
  tagRECT rect;
  tagPOINT title;         // top left of the title text
  unsigned titleSize;     // font size that fits below the box
  unsigned row, column;   // from 1, for the navigation values
};

struct PagePlan {
  tagPOINT title;
  tagRECT prev, next;
  unsigned rows, columns;
  std::vector<ButtonPlace> buttons;
};

// The plan for `count` buttons (1..36) on `canvas`; without `nav` the buttons also take the
// band of the previous and next buttons. Every top and bottom edge lies on an even line.
PagePlan PlanPage(unsigned count, const Canvas& canvas, bool nav);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_GRID_H
