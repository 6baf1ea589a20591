// Choosing default highlight and select colours (see Colours.h).
#include "tools/author/Colours.h"

#include <algorithm>
#include <limits>

namespace menutool::author {
namespace {

// Bright, saturated colours that read well on a television, most preferred first.
constexpr Rgb kCandidates[] = {{0, 220, 255}, {255, 230, 0}, {255, 40, 40}, {60, 255, 60},
                               {255, 60, 255}, {255, 255, 255}};

long Distance(const Rgb& a, const Rgb& b) {
  const long dr = static_cast<long>(a.r) - b.r, dg = static_cast<long>(a.g) - b.g,
             db = static_cast<long>(a.b) - b.b;
  return dr * dr + dg * dg + db * db;
}

// The candidate whose nearest colour in `avoid` is furthest away; the earlier on a tie.
Rgb Furthest(const std::vector<Rgb>& avoid) {
  Rgb best = kCandidates[0];
  long bestDistance = -1;
  for (const Rgb& candidate : kCandidates) {
    long nearest = std::numeric_limits<long>::max();
    for (const Rgb& a : avoid) nearest = std::min(nearest, Distance(candidate, a));
    if (nearest > bestDistance) {
      best = candidate;
      bestDistance = nearest;
    }
  }
  return best;
}

}  // namespace

ButtonColours ChooseColours(const std::vector<Rgb>& frames) {
  std::vector<Rgb> avoid;
  for (const Rgb& f : frames)  // components beyond 255 count as 255
    avoid.push_back({std::min(f.r, 255u), std::min(f.g, 255u), std::min(f.b, 255u)});
  ButtonColours colours;
  colours.highlight = Furthest(avoid);
  avoid.push_back(colours.highlight);
  colours.select = Furthest(avoid);
  return colours;
}

}  // namespace menutool::author
