// Moving a page between the NTSC (720x480) and PAL (720x576) canvases: telling from where the
// buttons lie that a layout was sized for the other standard, and scaling every vertical
// position of the page (the rectangles of every layout and of the previous and next buttons,
// and the title positions) to the new canvas height, on even lines. Widths do not change: both
// canvases are 720 pixels wide. Font sizes stay as they are.
#ifndef TOLVEX_TOOLS_RESCALE_H
#define TOLVEX_TOOLS_RESCALE_H

#include "tools/layout/Canvas.h"
#include "tools/page/PageReader.h"

#include <tolvex/MenuTemplate.h>

#include <optional>
#include <string>

namespace menutool {

// When the page's rectangles look laid out for the other standard than `canvas`, one line
// saying so (for a warning); nullopt when they fit `canvas` or there are none.
std::optional<std::string> SizedForOtherStandard(const PageReading& page, const Canvas& canvas);

// Writes the vertical positions of `page` (as read from the same template) scaled from `from`
// to `to` through `menu`, every layout in turn; ends with the layout that was in use selected
// again. False when a write fails.
bool RescalePage(CMenuTemplate& menu, const PageReading& page, const Canvas& from,
                 const Canvas& to);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_RESCALE_H
