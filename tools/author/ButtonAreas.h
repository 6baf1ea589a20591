// The areas a DVD player highlights on a menu page: for each button, the box of the band its
// mask marks (the band may lie round the button's frame, outside its rectangle), grown to even
// first and last lines as spumux takes them. A button whose band is not found keeps its own
// rectangle.
// spumux takes a button's colours only from the mask pixels inside its area, so an area that
// misses its band shows nothing.
#ifndef TOLVEX_TOOLS_AUTHOR_BUTTONAREAS_H
#define TOLVEX_TOOLS_AUTHOR_BUTTONAREAS_H

#include "tools/preview/MaskAreas.h"

#include <tolvex/WinTypes.h>

#include <vector>

namespace menutool::author {

// The area of each of `buttons` (rectangles with right and bottom exclusive, in page order),
// from the bands of `mask`; right and bottom exclusive, on the mask's canvas. A band goes to
// the button its box overlaps most (as a share of both), each band to one button.
std::vector<PixelBox> ButtonAreas(const std::vector<tagRECT>& buttons, const MaskAreas& mask);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_BUTTONAREAS_H
