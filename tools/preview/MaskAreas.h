// The button areas of a rendered mask: each 8-connected piece of marked (non-black) pixels is
// the band of one button. Read once from the mask picture and kept as a bitmap with
// the bounding box of every piece, for the preview and for the button areas of a disc menu.
#ifndef TOLVEX_TOOLS_MASKAREAS_H
#define TOLVEX_TOOLS_MASKAREAS_H

#include <string>
#include <vector>

namespace menutool {

struct PixelBox {
  int left, top, right, bottom;  // right and bottom exclusive
  bool Contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

struct MaskAreas {
  int width = 0, height = 0;
  std::vector<bool> marked;      // width * height, row by row
  std::vector<PixelBox> pieces;  // in the order their first pixel comes, row by row

  bool Marked(int x, int y) const { return marked[static_cast<size_t>(y) * width + x]; }
};

// Reads the mask picture `file`; throws ToolError when it cannot be read.
MaskAreas ReadMaskAreas(const std::string& file);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_MASKAREAS_H
