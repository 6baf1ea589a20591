// Paints the DVD highlight mask of a page.
#include "renderer/MaskPainter.h"

#include <algorithm>
#include <utility>

namespace tolvex::render {
namespace {

using Label = uint16_t;  // 0: nothing; n: the n-th marked button

// True when the pixel sets of `a` and `b` overlap or are 8-neighbours somewhere.
bool Touch(const Rect& a, const Rect& b) {
  return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

bool Contains(const Rect& outer, const Rect& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
         outer.bottom >= inner.bottom;
}

int64_t Area(const Rect& r) { return r.Empty() ? 0 : int64_t{r.Width()} * r.Height(); }

// Trims `a` and `b` (which touch) so that one free column or row lies between them, choosing
// the cut that loses the fewest pixels: the cost shared between both on one axis, or one
// rectangle moved wholly to one side of the other (buttons lying across each other). A
// rectangle inside another is left alone; its ring is kept apart pixel by pixel instead.
void TrimApart(Rect& a, Rect& b) {
  if (Contains(a, b) || Contains(b, a)) return;
  struct Cut {
    Rect a, b;
  };
  std::vector<Cut> cuts;
  // Shared: the one left of (or above) the other by centre gives half of what must go.
  const bool aLeft = a.left + a.right <= b.left + b.right;
  const bool aAbove = a.top + a.bottom <= b.top + b.bottom;
  const int needX = aLeft ? a.right + 1 - b.left : b.right + 1 - a.left;
  const int needY = aAbove ? a.bottom + 1 - b.top : b.bottom + 1 - a.top;
  Cut x{a, b};
  (aLeft ? x.a : x.b).right -= needX / 2;
  (aLeft ? x.b : x.a).left += needX - needX / 2;
  cuts.push_back(x);
  Cut y{a, b};
  (aAbove ? y.a : y.b).bottom -= needY / 2;
  (aAbove ? y.b : y.a).top += needY - needY / 2;
  cuts.push_back(y);
  // One-sided: either rectangle cut back to one side of the other.
  for (const bool moveB : {true, false}) {
    const Rect& still = moveB ? a : b;
    const Rect& moved = moveB ? b : a;
    Rect left = moved, right = moved, above = moved, below = moved;
    left.right = std::min(moved.right, still.left - 1);
    right.left = std::max(moved.left, still.right + 1);
    above.bottom = std::min(moved.bottom, still.top - 1);
    below.top = std::max(moved.top, still.bottom + 1);
    for (const Rect& r : {left, right, above, below}) {
      cuts.push_back(moveB ? Cut{a, r} : Cut{r, b});
    }
  }
  const Cut* best = nullptr;
  int64_t bestLoss = 0;
  for (const Cut& c : cuts) {
    if (c.a.Empty() || c.b.Empty()) continue;
    const int64_t loss = Area(a) - Area(c.a) + Area(b) - Area(c.b);
    if (best == nullptr || loss < bestLoss) {
      best = &c;
      bestLoss = loss;
    }
  }
  if (best == nullptr) return;
  a = best->a;
  b = best->b;
}

// One side of a rectangle, also the index into the outline's widths below.
enum Side { kLeft, kTop, kRight, kBottom };

struct Marked {
  Rect rect;     // the button's visible rectangle, trimmed apart from its neighbours
  int outside;   // width of the outline where it lies outside the rectangle
  int inside;    // width of the outline where it lies on the frame instead
  Rect outer;    // the outline covers outer less hole
  Rect hole;
};

// The strip of `width` pixels just outside `side` of `r`, as long as that side.
Rect Strip(const Rect& r, Side side, int width) {
  switch (side) {
    case kLeft: return Rect{r.left - width, r.top, r.left, r.bottom};
    case kTop: return Rect{r.left, r.top - width, r.right, r.top};
    case kRight: return Rect{r.right, r.top, r.right + width, r.bottom};
    case kBottom: return Rect{r.left, r.bottom, r.right, r.bottom + width};
  }
  return r;
}

// `r` grown by `by` pixels on each side; `r` lies on the page, so the edges stay in range.
Rect Grown(const Rect& r, int by) {
  return Rect{r.left - by, r.top - by, r.right + by, r.bottom + by};
}

// Whether `area` lies on the page and keeps one free pixel between it and every button other
// than marked[i], together with the widest outline that button could draw round itself, so
// that no outline depends on what another chose.
bool Free(const std::vector<Marked>& marked, size_t i, const Rect& area, const Rect& canvas) {
  if (area.left < canvas.left || area.top < canvas.top || area.right > canvas.right ||
      area.bottom > canvas.bottom) {
    return false;
  }
  for (size_t j = 0; j < marked.size(); ++j) {
    if (j != i && Touch(area, Grown(marked[j].rect, marked[j].outside))) return false;
  }
  return true;
}

// Places the outline of marked[i]. The menu picture draws the frame along the inside of the
// button's rectangle; were the outline on the same pixels, a highlight in a colour near the
// frame's would hardly show. So each side of the outline lies just outside the rectangle,
// touching the frame but clear of it, as thick as the frame within kMinMaskRing..kMaxMaskHalo:
// a selected button gains a band round its frame, and the frame stays visible inside it.
// Where a side has no room outside (the page's edge, or a neighbour too close) that side lies
// on the frame instead, as thick as the frame and at least kMinMaskRing, and the highlight
// replaces the frame there. Either way the outline is one closed ring: each side is a band
// between the outer rectangle and the hole.
void PlaceOutline(std::vector<Marked>& marked, size_t i, const Rect& canvas) {
  Marked& m = marked[i];
  const Rect& r = m.rect;
  const int w = m.outside;
  int out[4];
  for (const Side side : {kLeft, kTop, kRight, kBottom}) {
    out[side] = Free(marked, i, Strip(r, side, w), canvas) ? w : 0;
  }
  // A corner is outside when both its sides are; without room there, its upright side yields.
  for (const Side upright : {kLeft, kRight}) {
    for (const Side level : {kTop, kBottom}) {
      if (out[upright] == 0 || out[level] == 0) continue;
      const int x = upright == kLeft ? r.left - w : r.right;
      const int y = level == kTop ? r.top - w : r.bottom;
      if (!Free(marked, i, Rect{x, y, x + w, y + w}, canvas)) out[upright] = 0;
    }
  }
  m.outer = Rect{r.left - out[kLeft], r.top - out[kTop], r.right + out[kRight],
                 r.bottom + out[kBottom]};
  const int in = RingWidth(r, m.inside);  // a frame thicker than the button fills it
  m.hole = Rect{r.left + (out[kLeft] ? 0 : in), r.top + (out[kTop] ? 0 : in),
                r.right - (out[kRight] ? 0 : in), r.bottom - (out[kBottom] ? 0 : in)};
}

class LabelGrid {
 public:
  LabelGrid(int width, int height)
      : m_width(width), m_height(height), m_labels(static_cast<size_t>(width) * height, 0) {}

  Label At(int x, int y) const { return m_labels[static_cast<size_t>(y) * m_width + x]; }
  void Set(int x, int y, Label l) { m_labels[static_cast<size_t>(y) * m_width + x] = l; }

  // True when (x, y) or one of its eight neighbours belongs to another label.
  bool NearOther(int x, int y, Label self) const {
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        const int nx = x + dx;
        const int ny = y + dy;
        if (nx < 0 || ny < 0 || nx >= m_width || ny >= m_height) continue;
        const Label l = At(nx, ny);
        if (l != 0 && l != self) return true;
      }
    }
    return false;
  }

  void DrawRing(const Marked& m, Label label) {
    const Rect& r = m.outer;
    const Rect& hole = m.hole;
    for (int y = r.top; y < r.bottom; ++y) {
      const bool across = hole.Empty() || y < hole.top || y >= hole.bottom;
      for (int x = r.left; x < r.right; ++x) {
        if (!across && x >= hole.left && x < hole.right) {
          x = hole.right - 1;  // skip the hole
          continue;
        }
        if (!NearOther(x, y, label)) Set(x, y, label);
      }
    }
  }

  // Keeps only the largest 8-connected piece of `label` within `area`.
  void KeepLargestPiece(const Rect& area, Label label) {
    std::vector<int> piece(static_cast<size_t>(area.Width()) * area.Height(), 0);
    auto index = [&](int x, int y) {
      return static_cast<size_t>(y - area.top) * area.Width() + (x - area.left);
    };
    std::vector<size_t> sizes{0};
    std::vector<std::pair<int, int>> stack;
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) {
        if (At(x, y) != label || piece[index(x, y)] != 0) continue;
        const int id = static_cast<int>(sizes.size());
        size_t count = 0;
        piece[index(x, y)] = id;
        stack.push_back({x, y});
        while (!stack.empty()) {
          const auto [cx, cy] = stack.back();
          stack.pop_back();
          ++count;
          for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
              const int nx = cx + dx;
              const int ny = cy + dy;
              if (nx < area.left || ny < area.top || nx >= area.right || ny >= area.bottom) continue;
              if (At(nx, ny) != label || piece[index(nx, ny)] != 0) continue;
              piece[index(nx, ny)] = id;
              stack.push_back({nx, ny});
            }
          }
        }
        sizes.push_back(count);
      }
    }
    if (sizes.size() <= 2) return;  // one piece or none
    const int keep = static_cast<int>(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) {
        const int id = piece[index(x, y)];
        if (id != 0 && id != keep) Set(x, y, 0);
      }
    }
  }

 private:
  int m_width;
  int m_height;
  std::vector<Label> m_labels;
};

}  // namespace

std::vector<uint8_t> PaintMask(const Page& page) {
  const Rect canvas = page.Canvas();
  std::vector<Marked> marked;
  for (const Button& button : page.buttons) {
    const Rect visible = button.rect.Intersect(canvas);
    if (visible.Empty()) continue;
    if (marked.size() == UINT16_MAX) break;  // far beyond what a DVD page can hold
    const int thickness = button.frameThickness;
    marked.push_back(Marked{visible, std::clamp(thickness, kMinMaskRing, kMaxMaskHalo),
                            std::max(thickness, kMinMaskRing), Rect{}, Rect{}});
  }
  for (size_t i = 0; i < marked.size(); ++i) {
    for (size_t j = i + 1; j < marked.size(); ++j) {
      if (Touch(marked[i].rect, marked[j].rect)) TrimApart(marked[i].rect, marked[j].rect);
    }
  }
  for (size_t i = 0; i < marked.size(); ++i) PlaceOutline(marked, i, canvas);

  LabelGrid grid(page.width, page.height);
  for (size_t i = 0; i < marked.size(); ++i) grid.DrawRing(marked[i], static_cast<Label>(i + 1));
  for (size_t i = 0; i < marked.size(); ++i) {
    grid.KeepLargestPiece(marked[i].outer, static_cast<Label>(i + 1));
  }

  std::vector<uint8_t> rgb(static_cast<size_t>(page.width) * page.height * 3, 0);
  for (int y = 0; y < page.height; ++y) {
    for (int x = 0; x < page.width; ++x) {
      if (grid.At(x, y) == 0) continue;
      uint8_t* px = &rgb[(static_cast<size_t>(y) * page.width + x) * 3];
      px[0] = kMaskColour.r;
      px[1] = kMaskColour.g;
      px[2] = kMaskColour.b;
    }
  }
  return rgb;
}

}  // namespace tolvex::render
