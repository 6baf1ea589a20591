// The preview picture of `render --preview` and of author's menus: the rendered menu with the
// button areas of the rendered mask (or what a DVD player draws of them) over it, as a PNG for
// a person to look at.
#ifndef TOLVEX_TOOLS_PREVIEW_H
#define TOLVEX_TOOLS_PREVIEW_H

#include "tools/preview/MaskAreas.h"

#include <string>
#include <vector>

namespace menutool {

// A disc menu as a player shows it when it opens: the area of each button, within which a
// player draws the mask's pixels of the highlighted button in the highlight colour.
struct PlayerView {
  std::vector<PixelBox> areas;
  size_t highlighted;  // index into areas
  unsigned char r, g, b;
};

// Writes `png` from the pictures `menu` and `mask`; returns the number of areas boxed. Without
// `player`: every band of the mask tinted, each boxed. With it: what the player draws, every
// button's highlight area boxed. Throws ToolError naming the picture that cannot be read or
// written.
int WritePreview(const std::string& menu, const std::string& mask, const std::string& png,
                 const PlayerView* player = nullptr);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PREVIEW_H
