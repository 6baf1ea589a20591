// The 8-connected areas of the marked pixels of a picture, as boxes: what the tests of masks
// count and place, however they read the picture.
#ifndef TOLVEX_TESTS_SUPPORT_MARKEDAREAS_H
#define TOLVEX_TESTS_SUPPORT_MARKEDAREAS_H

#include <algorithm>
#include <utility>
#include <vector>

namespace tolvex::test {

struct MarkedArea {  // right and bottom exclusive
  int left, top, right, bottom;
};

// The areas of a `width` x `height` picture whose pixels (x, y) satisfy `marked`, in the order
// of their first pixel row by row, as `Box`es built from {left, top, right, bottom}.
template <class Box = MarkedArea, class Marked>
std::vector<Box> MarkedAreas(int width, int height, Marked marked) {
  std::vector<char> seen(static_cast<size_t>(width) * height, 0);
  auto take = [&](int x, int y) {  // whether (x, y) is marked and not yet in an area
    if (x < 0 || y < 0 || x >= width || y >= height) return false;
    char& s = seen[static_cast<size_t>(y) * width + x];
    return !s && (s = marked(x, y) ? 1 : 0);
  };
  std::vector<Box> areas;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (!take(x, y)) continue;
      Box& box = areas.emplace_back(Box{x, y, x + 1, y + 1});
      for (std::vector<std::pair<int, int>> todo{{x, y}}; !todo.empty();) {
        const auto [cx, cy] = todo.back();
        todo.pop_back();
        box.left = std::min(box.left, cx), box.top = std::min(box.top, cy);
        box.right = std::max(box.right, cx + 1), box.bottom = std::max(box.bottom, cy + 1);
        for (int d = 0; d < 9; ++d) {
          const int nx = cx + d % 3 - 1, ny = cy + d / 3 - 1;
          if (take(nx, ny)) todo.emplace_back(nx, ny);
        }
      }
    }
  }
  return areas;
}

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_MARKEDAREAS_H
