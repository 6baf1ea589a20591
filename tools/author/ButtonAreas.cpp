// Matching the mask's bands to the buttons (see ButtonAreas.h).
#include "tools/author/ButtonAreas.h"

#include <algorithm>

namespace menutool::author {
namespace {

long long Area(const PixelBox& b) {
  return b.right > b.left && b.bottom > b.top
             ? static_cast<long long>(b.right - b.left) * (b.bottom - b.top)
             : 0;
}

PixelBox Common(const PixelBox& a, const PixelBox& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

// How much `a` and `b` are one box: their common area over the area either covers.
double Likeness(const PixelBox& a, const PixelBox& b) {
  const long long common = Area(Common(a, b));
  const long long either = Area(a) + Area(b) - common;
  return either > 0 ? static_cast<double>(common) / static_cast<double>(either) : 0;
}

// spumux takes areas whose first and last lines are even: the top goes up to an even line,
// the last line down to one, inside the canvas.
PixelBox EvenLines(PixelBox b, int width, int height) {
  b.top &= ~1;
  const int last = std::min((b.bottom & ~1), (height - 1) & ~1);
  b.bottom = last + 1;
  return Common(b, {0, 0, width, height});
}

}  // namespace

std::vector<PixelBox> ButtonAreas(const std::vector<tagRECT>& buttons, const MaskAreas& mask) {
  std::vector<PixelBox> own;
  for (const tagRECT& r : buttons)
    own.push_back({static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
                   static_cast<int>(r.bottom)});
  // Best pairs first, so that a band goes to the button it belongs to even when it also
  // touches a neighbour's rectangle.
  struct Pair {
    double likeness;
    size_t button, band;
  };
  std::vector<Pair> pairs;
  for (size_t b = 0; b < own.size(); ++b)
    for (size_t p = 0; p < mask.pieces.size(); ++p)
      if (const double l = Likeness(own[b], mask.pieces[p]); l > 0) pairs.push_back({l, b, p});
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Pair& a, const Pair& b) { return a.likeness > b.likeness; });
  std::vector<PixelBox> areas = own;
  std::vector<bool> buttonDone(own.size(), false), bandDone(mask.pieces.size(), false);
  for (const Pair& pair : pairs) {
    if (buttonDone[pair.button] || bandDone[pair.band]) continue;
    buttonDone[pair.button] = bandDone[pair.band] = true;
    areas[pair.button] = mask.pieces[pair.band];
  }
  for (PixelBox& area : areas) area = EvenLines(area, mask.width, mask.height);
  return areas;
}

}  // namespace menutool::author
