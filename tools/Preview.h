// The preview picture of `render --preview`: the rendered menu with the button areas of the
// rendered mask drawn over it, as a PNG for a person to look at (cairo and gdk-pixbuf).
#ifndef TOLVEX_TOOLS_PREVIEW_H
#define TOLVEX_TOOLS_PREVIEW_H

#include <string>

namespace menutool {

// Writes `png` from the pictures `menu` and `mask`; returns the number of button areas found
// in the mask. Throws ToolError naming the picture that cannot be read or written.
int WritePreview(const std::string& menu, const std::string& mask, const std::string& png);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PREVIEW_H
