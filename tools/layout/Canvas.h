// The picture a menu page is drawn on: its size for NTSC and PAL, its title-safe area (the
// part every television shows, 10% in from each edge), and rectangle tests on it.
#ifndef TOLVEX_TOOLS_CANVAS_H
#define TOLVEX_TOOLS_CANVAS_H

#include <tolvex/WinTypes.h>

namespace menutool {

struct Canvas {
  int width;
  int height;

  static Canvas Ntsc() { return {720, 480}; }
  static Canvas Pal() { return {720, 576}; }
  static Canvas For(bool ntsc) { return ntsc ? Ntsc() : Pal(); }

  tagRECT SafeArea() const {
    return {width / 10, height / 10, width - width / 10, height - height / 10};
  }
  bool Contains(const tagRECT& r) const {
    return r.left >= 0 && r.top >= 0 && r.right <= width && r.bottom <= height;
  }
};

// Left below right and top above bottom.
inline bool IsProper(const tagRECT& r) { return r.left < r.right && r.top < r.bottom; }

// Proper rectangles that share at least one pixel (right and bottom edges are exclusive).
inline bool Overlap(const tagRECT& a, const tagRECT& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace menutool

#endif  // TOLVEX_TOOLS_CANVAS_H
