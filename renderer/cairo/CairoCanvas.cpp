// The canvas on cairo: an RGB24 image surface; pictures decoded by gdk-pixbuf, titles laid out
// by pango. Rectangles and rings have whole-pixel edges, so cairo fills them exactly.
#include "renderer/Canvas.h"

#include "renderer/Failure.h"
#include "renderer/cairo/PangoText.h"
#include "renderer/cairo/PixbufPicture.h"

namespace tolvex::render {

struct Canvas::Surface {
  struct ContextDestroy {
    void operator()(cairo_t* cr) const { cairo_destroy(cr); }
  };
  SurfacePtr image;
  std::unique_ptr<cairo_t, ContextDestroy> cr;
};

namespace {

void SetColour(cairo_t* cr, Colour c) {
  cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0);
}

// The ring between `outer` and `inner` as the current path, for even-odd filling.
void RingPath(cairo_t* cr, const Rect& outer, const Rect& inner) {
  cairo_new_path(cr);
  cairo_rectangle(cr, outer.left, outer.top, outer.Width(), outer.Height());
  if (!inner.Empty()) cairo_rectangle(cr, inner.left, inner.top, inner.Width(), inner.Height());
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
}

// Paints the picture at `path` stretched over `target`, limited to the current clip.
Status PaintPicture(cairo_t* cr, const std::string& path, const Rect& target) {
  PixbufPtr picture;
  if (const Status s = LoadPictureAt(path, target.Width(), target.Height(), &picture);
      s != Status::kOk) {
    return s;
  }
  SurfacePtr surface;
  if (const Status s = ToSurface(picture.get(), &surface); s != Status::kOk) return s;
  cairo_set_source_surface(cr, surface.get(), target.left, target.top);
  cairo_paint(cr);
  // The pattern holds its own reference to the surface; release it before the surface goes.
  cairo_set_source_rgb(cr, 0, 0, 0);
  return Status::kOk;
}

}  // namespace

Canvas::Canvas(std::unique_ptr<Surface> surface) : m_surface(std::move(surface)) {}
Canvas::~Canvas() = default;

Status Canvas::Create(int width, int height, std::unique_ptr<Canvas>* out) {
  auto surface = std::make_unique<Surface>();
  surface->image.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  if (cairo_surface_status(surface->image.get()) != CAIRO_STATUS_SUCCESS) {
    return Fail(Status::kDrawingFailed, "out of memory for the menu canvas");
  }
  surface->cr.reset(cairo_create(surface->image.get()));
  cairo_set_source_rgb(surface->cr.get(), 0, 0, 0);
  cairo_paint(surface->cr.get());
  out->reset(new Canvas(std::move(surface)));
  return Status::kOk;
}

void Canvas::FillRing(const Rect& outer, const Rect& inner, Colour colour) {
  cairo_t* cr = m_surface->cr.get();
  cairo_save(cr);
  RingPath(cr, outer, inner);
  SetColour(cr, colour);
  cairo_fill(cr);
  cairo_restore(cr);
}

Status Canvas::DrawPicture(const std::string& path, const Rect& target, const Rect* ringInner) {
  cairo_t* cr = m_surface->cr.get();
  if (ringInner == nullptr) return PaintPicture(cr, path, target);
  cairo_save(cr);
  RingPath(cr, target, *ringInner);
  cairo_clip(cr);
  const Status s = PaintPicture(cr, path, target);
  cairo_restore(cr);
  return s;
}

void Canvas::FillPolygon(const std::vector<Point>& points, Colour colour) {
  if (points.empty()) return;
  cairo_t* cr = m_surface->cr.get();
  cairo_save(cr);
  cairo_new_path(cr);
  cairo_move_to(cr, points[0].x, points[0].y);
  for (size_t i = 1; i < points.size(); ++i) cairo_line_to(cr, points[i].x, points[i].y);
  cairo_close_path(cr);
  SetColour(cr, colour);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  cairo_fill(cr);
  cairo_restore(cr);
}

void Canvas::DrawTitle(const Title& title, const Rect& area) {
  render::DrawTitle(m_surface->cr.get(), title, area);
}

Status Canvas::Finish() {
  cairo_t* cr = m_surface->cr.get();
  if (cairo_status(cr) != CAIRO_STATUS_SUCCESS) {
    return Fail(Status::kDrawingFailed,
                std::string("drawing failed: ") + cairo_status_to_string(cairo_status(cr)));
  }
  m_surface->cr.reset();
  cairo_surface_flush(m_surface->image.get());
  return Status::kOk;
}

PixelRows Canvas::Rows() const {
  cairo_surface_t* image = m_surface->image.get();
  return PixelRows{cairo_image_surface_get_width(image), cairo_image_surface_get_height(image),
                   cairo_image_surface_get_data(image), cairo_image_surface_get_stride(image),
                   PixelLayout::kCairo};
}

}  // namespace tolvex::render
