// Finding boxes on the canvas that share pixels without testing every pair: each box is kept
// in the 8-pixel cells of the canvas it covers, and a search looks only at the boxes of the
// cells the searched box covers. Boxes that do not overlap each other are at most 64 to a cell,
// so a search costs a bounded amount per cell; a cell takes a few dozen boxes beyond that
// (boxes piled on each other) and then refuses more, by which time check has more overlaps
// than it lists. Not thread-safe; one grid per layout being checked.
#ifndef TOLVEX_TOOLS_BOXGRID_H
#define TOLVEX_TOOLS_BOXGRID_H

#include "renderer/Page.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace menutool {

class BoxGrid {
 public:
  // A grid over `area` (the canvas); boxes are found only by the pixels they have in it.
  explicit BoxGrid(const tolvex::render::Rect& area);

  // Keeps `box` under `id`. False, and nothing kept, when the box has no pixel in the area or a
  // cell it covers is full.
  bool Add(std::size_t id, const tolvex::render::Rect& box);

  // The ids of the kept boxes that share a pixel with `box` in the area, ascending.
  std::vector<std::size_t> Find(const tolvex::render::Rect& box) const;

  // Boxes beyond the 64 disjoint ones a cell can hold that it takes before it is full.
  static constexpr std::size_t kPiledBoxes = 64;

 private:
  static constexpr int kCell = 8;
  // The cells `box` covers, as [first, last) columns and rows; false when none.
  bool CellsOf(const tolvex::render::Rect& box, int* columns, int* rows) const;

  tolvex::render::Rect m_area;
  int m_columns, m_rows;
  std::vector<std::vector<std::size_t>> m_cells;  // indexes into m_boxes
  std::vector<std::pair<std::size_t, tolvex::render::Rect>> m_boxes;
};

}  // namespace menutool

#endif  // TOLVEX_TOOLS_BOXGRID_H
