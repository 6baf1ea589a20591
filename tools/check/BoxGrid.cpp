// The cell grid of check's overlap search (see BoxGrid.h).
#include "tools/check/BoxGrid.h"

#include <algorithm>

namespace menutool {
namespace render = tolvex::render;
namespace {

bool Share(const render::Rect& a, const render::Rect& b) {
  return !a.Empty() && !b.Empty() && a.left < b.right && b.left < a.right && a.top < b.bottom &&
         b.top < a.bottom;
}

render::Rect Within(const render::Rect& box, const render::Rect& area) {
  return {std::max(box.left, area.left), std::max(box.top, area.top),
          std::min(box.right, area.right), std::min(box.bottom, area.bottom)};
}

}  // namespace

BoxGrid::BoxGrid(const render::Rect& area)
    : m_area(area),
      m_columns(static_cast<int>(std::max<int64_t>(0, (area.Width() + kCell - 1) / kCell))),
      m_rows(static_cast<int>(std::max<int64_t>(0, (area.Height() + kCell - 1) / kCell))),
      m_cells(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows)) {}

bool BoxGrid::CellsOf(const render::Rect& box, int* columns, int* rows) const {
  const render::Rect in = Within(box, m_area);
  if (box.Empty() || in.Empty()) return false;
  columns[0] = (in.left - m_area.left) / kCell;
  columns[1] = (in.right - m_area.left + kCell - 1) / kCell;
  rows[0] = (in.top - m_area.top) / kCell;
  rows[1] = (in.bottom - m_area.top + kCell - 1) / kCell;
  return true;
}

bool BoxGrid::Add(std::size_t id, const render::Rect& box) {
  int columns[2], rows[2];
  if (!CellsOf(box, columns, rows)) return false;
  constexpr std::size_t kCapacity = kCell * kCell + kPiledBoxes;
  for (int r = rows[0]; r < rows[1]; ++r)
    for (int c = columns[0]; c < columns[1]; ++c)
      if (m_cells[static_cast<std::size_t>(r) * m_columns + c].size() >= kCapacity) return false;
  for (int r = rows[0]; r < rows[1]; ++r)
    for (int c = columns[0]; c < columns[1]; ++c)
      m_cells[static_cast<std::size_t>(r) * m_columns + c].push_back(m_boxes.size());
  m_boxes.emplace_back(id, box);
  return true;
}

std::vector<std::size_t> BoxGrid::Find(const render::Rect& box) const {
  int columns[2], rows[2];
  std::vector<std::size_t> kept;
  if (!CellsOf(box, columns, rows)) return kept;
  for (int r = rows[0]; r < rows[1]; ++r)
    for (int c = columns[0]; c < columns[1]; ++c)
      for (std::size_t k : m_cells[static_cast<std::size_t>(r) * m_columns + c])
        if (Share(m_boxes[k].second, box)) kept.push_back(k);
  std::sort(kept.begin(), kept.end());
  kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
  std::vector<std::size_t> ids;
  ids.reserve(kept.size());
  for (std::size_t k : kept) ids.push_back(m_boxes[k].first);
  std::sort(ids.begin(), ids.end());
  return ids;
}

}  // namespace menutool
