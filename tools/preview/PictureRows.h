// A picture file as plain RGB rows for the preview to draw on and measure, read, checked and
// decoded by the renderer's own code (renderer/Picture.h). Reentrant.
#ifndef TOLVEX_TOOLS_PICTUREROWS_H
#define TOLVEX_TOOLS_PICTUREROWS_H

#include "renderer/Picture.h"

#include <string>

namespace menutool {

using tolvex::render::RgbPicture;

// The picture at `path`, or a ToolError about `path` whose message starts with `what`
// ("cannot read the mask: ") and says why.
RgbPicture ReadPictureRows(const std::string& path, const std::string& what);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PICTUREROWS_H
