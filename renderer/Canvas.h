// The drawing surface of the menu picture: an opaque RGB canvas that MenuPainter paints a page
// onto with a handful of operations (rectangles and rings, pictures stretched into a
// rectangle, filled polygons, titles), and whose rows are then read back for encoding. The
// operations are implemented once per system by a back end (cairo/ with pango and gdk-pixbuf,
// gdiplus/ with GDI+); the page logic stays in MenuPainter. A canvas belongs to one thread.
#ifndef TOLVEX_RENDERER_CANVAS_H
#define TOLVEX_RENDERER_CANVAS_H

#include <memory>
#include <string>
#include <vector>

#include "renderer/BmpWriter.h"
#include "renderer/Page.h"
#include "renderer/Status.h"

namespace tolvex::render {

struct Point {
  double x = 0;
  double y = 0;
};

class Canvas {
 public:
  // A black canvas of `width` x `height` pixels; kDrawingFailed when there is no memory for it.
  static Status Create(int width, int height, std::unique_ptr<Canvas>* out);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  // Fills the ring between `outer` and `inner` (all of `outer` when `inner` is empty) with
  // `colour`, exactly on whole pixels, without anti-aliasing.
  void FillRing(const Rect& outer, const Rect& inner, Colour colour);

  // Paints the picture at `path` stretched over `target`. With `ringInner` given, only the
  // ring between `target` and it is painted (a frame picture). Fails when the picture cannot
  // be read or decoded.
  Status DrawPicture(const std::string& path, const Rect& target,
                     const Rect* ringInner = nullptr);

  // Fills the closed polygon through `points` (non-zero winding) with `colour`.
  void FillPolygon(const std::vector<Point>& points, Colour colour);

  // Draws `title`: its layout box's top-left corner at the title's position, or the box
  // centred on `area` when it has none (see TitleText.h for fonts and measuring).
  void DrawTitle(const Title& title, const Rect& area);

  // Ends the drawing: kDrawingFailed, with the reason, when the drawing library failed on the
  // way. After success, Rows() holds the pixels.
  Status Finish();
  PixelRows Rows() const;

 private:
  struct Surface;
  explicit Canvas(std::unique_ptr<Surface> surface);
  std::unique_ptr<Surface> m_surface;
};

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_CANVAS_H
