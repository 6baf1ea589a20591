// Paints the menu picture of a page with cairo.
#include "renderer/MenuPainter.h"

#include <memory>

#include "renderer/Failure.h"
#include "renderer/TitleText.h"

namespace tolvex::render {
namespace {

struct CairoDestroy {
  void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};

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

// The ring between `outer` and `inner` as the current path, for even-odd filling.
void RingPath(cairo_t* cr, const Rect& outer, const Rect& inner) {
  cairo_new_path(cr);
  cairo_rectangle(cr, outer.left, outer.top, outer.Width(), outer.Height());
  if (!inner.Empty()) cairo_rectangle(cr, inner.left, inner.top, inner.Width(), inner.Height());
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
}

Status PaintButton(cairo_t* cr, const Button& button, const Rect& canvas) {
  // Only the part on the page is drawn, frame and picture fitted to it, just as the mask
  // marks it; this also keeps every size below in range whatever the template's edges.
  const Rect rect = button.rect.Intersect(canvas);
  if (rect.Empty()) return Status::kOk;  // wholly off the page: not on the menu nor the mask
  const int ring = RingWidth(rect, button.frameThickness);
  const Rect inner = rect.Inset(ring);

  if (!button.picture.empty() && !inner.Empty()) {
    if (const Status s = PaintPicture(cr, button.picture, inner); s != Status::kOk) return s;
  }
  if (ring > 0) {
    cairo_save(cr);
    RingPath(cr, rect, inner);
    if (!button.framePicture.empty()) {
      cairo_clip(cr);
      const Status s = PaintPicture(cr, button.framePicture, rect);
      cairo_restore(cr);
      if (s != Status::kOk) return s;
    } else {
      const Colour& c = button.frameColour;
      cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0);
      cairo_fill(cr);
      cairo_restore(cr);
    }
  } else if (!button.framePicture.empty()) {
    // No ring to show it in, but a named picture that is missing is still an error.
    PixbufPtr unused;
    if (const Status s = LoadPicture(button.framePicture, &unused); s != Status::kOk) return s;
  }
  DrawTitle(cr, button.title, rect);
  return Status::kOk;
}

}  // namespace

Status PaintMenu(const Page& page, SurfacePtr* canvas) {
  SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, page.width, page.height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    return Fail(Status::kDrawingFailed, "out of memory for the menu canvas");
  }
  std::unique_ptr<cairo_t, CairoDestroy> cr(cairo_create(surface.get()));

  cairo_set_source_rgb(cr.get(), 0, 0, 0);
  cairo_paint(cr.get());
  if (!page.background.empty()) {
    if (const Status s = PaintPicture(cr.get(), page.background, page.Canvas()); s != Status::kOk) {
      return s;
    }
  }
  DrawTitle(cr.get(), page.title, page.Canvas());
  for (const Button& button : page.buttons) {
    if (const Status s = PaintButton(cr.get(), button, page.Canvas()); s != Status::kOk) return s;
  }
  if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS) {
    return Fail(Status::kDrawingFailed,
                std::string("drawing failed: ") + cairo_status_to_string(cairo_status(cr.get())));
  }
  cr.reset();
  cairo_surface_flush(surface.get());
  *canvas = std::move(surface);
  return Status::kOk;
}

}  // namespace tolvex::render
