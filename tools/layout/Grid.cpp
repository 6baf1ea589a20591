// Grid arrangement of a new page (see Grid.h).
#include "tools/layout/Grid.h"

#include <algorithm>
#include <cmath>

namespace menutool {
namespace {

constexpr int kTitleBand = 56;   // height kept for the page title
constexpr int kNavHeight = 40;   // previous/next buttons
constexpr int kNavWidth = 96;
constexpr int kGap = 16;         // between cells and bands

// Interlaced television draws even and odd lines in turns, so edges sit on even lines.
int EvenDown(int v) { return v - (v & 1); }
int EvenUp(int v) { return v + (v & 1); }

}  // namespace

PagePlan PlanPage(unsigned count, const Canvas& canvas, bool nav) {
  tagRECT safe = canvas.SafeArea();
  safe.top = EvenUp(safe.top);
  safe.bottom = EvenDown(safe.bottom);
  PagePlan plan{};
  plan.title = {safe.left, safe.top};
  plan.prev = {safe.left, safe.bottom - kNavHeight, safe.left + kNavWidth, safe.bottom};
  plan.next = {safe.right - kNavWidth, safe.bottom - kNavHeight, safe.right, safe.bottom};

  count = std::max(count, 1u);
  plan.columns = static_cast<unsigned>(std::ceil(std::sqrt(static_cast<double>(count))));
  plan.rows = (count + plan.columns - 1) / plan.columns;
  const int cols = static_cast<int>(plan.columns), rows = static_cast<int>(plan.rows);

  const int areaTop = safe.top + kTitleBand;
  const int areaBottom = nav ? safe.bottom - kNavHeight - kGap : safe.bottom;
  const int cellW = (safe.right - safe.left - (cols - 1) * kGap) / cols;
  const int cellH = (areaBottom - areaTop - (rows - 1) * kGap) / rows;
  // The title takes a fifth of the cell, at least 16 and at most 24 pixels; its text, 4 pixels
  // below the box, fits the band with its descenders.
  const int titleBand = EvenDown(std::clamp(cellH / 5, 16, 24));
  const int boxH = EvenDown(std::min(cellH - titleBand, cellW * 9 / 16));
  const int boxW = boxH * 16 / 9;

  for (unsigned i = 0; i < count; ++i) {
    int row = static_cast<int>(i) / cols, col = static_cast<int>(i) % cols;
    // A short last row is centred under the full ones.
    int inRow = std::min(cols, static_cast<int>(count) - row * cols);
    int rowShift = (cols - inRow) * (cellW + kGap) / 2;
    int cellLeft = safe.left + rowShift + col * (cellW + kGap);
    int cellTop = areaTop + row * (cellH + kGap);
    int left = cellLeft + (cellW - boxW) / 2;
    int top = EvenDown(cellTop + (cellH - titleBand - boxH) / 2);
    ButtonPlace place{};
    place.rect = {left, top, left + boxW, top + boxH};
    place.title = {left, top + boxH + 4};
    place.titleSize = static_cast<unsigned>((titleBand - 4) * 4 / 5);
    place.row = static_cast<unsigned>(row + 1);
    place.column = static_cast<unsigned>(col + 1);
    plan.buttons.push_back(place);
  }
  return plan;
}

}  // namespace menutool
