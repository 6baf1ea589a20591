// Finding the button areas of a mask (see MaskAreas.h).
#include "tools/preview/MaskAreas.h"

#include "tools/cli/ToolError.h"
#include "tools/preview/PictureRows.h"

#include <algorithm>

namespace menutool {

MaskAreas ReadMaskAreas(const std::string& file) {
  const RgbPicture mask = ReadPictureRows(file, "cannot read the mask: ");
  MaskAreas areas;
  const int w = areas.width = mask.width;
  const int h = areas.height = mask.height;
  areas.marked.assign(static_cast<size_t>(w) * h, false);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const uint8_t* p = mask.At(x, y);
      areas.marked[static_cast<size_t>(y) * w + x] = (p[0] | p[1] | p[2]) != 0;
    }

  std::vector<bool> seen(areas.marked.size(), false);
  std::vector<size_t> stack;
  for (size_t start = 0; start < areas.marked.size(); ++start) {
    if (!areas.marked[start] || seen[start]) continue;
    const int sx = static_cast<int>(start % w), sy = static_cast<int>(start / w);
    PixelBox box{sx, sy, sx + 1, sy + 1};
    stack.assign(1, start);
    seen[start] = true;
    while (!stack.empty()) {
      const size_t at = stack.back();
      stack.pop_back();
      const int x = static_cast<int>(at % w), y = static_cast<int>(at / w);
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
             std::max(box.bottom, y + 1)};
      for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
          const int nx = x + dx, ny = y + dy;
          if (nx < 0 || ny < 0 || nx >= w || ny >= h) continue;
          const size_t next = static_cast<size_t>(ny) * w + nx;
          if (areas.marked[next] && !seen[next]) {
            seen[next] = true;
            stack.push_back(next);
          }
        }
    }
    areas.pieces.push_back(box);
  }
  return areas;
}

}  // namespace menutool
