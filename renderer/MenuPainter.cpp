// Paints the menu picture of a page with cairo.
#include "renderer/MenuPainter.h"

#include <algorithm>
#include <cmath>
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

// The arrow of a previous or next button that has no picture, inside the ring: one solid
// shape, a head as tall as the space allows on a shaft 0.44 of that, pointing left for the
// previous button and right for the next. It is filled in the frame colour, the colour the
// page's designer chose to stand out from the background around the button, so the arrow reads
// wherever its frame does. Anti-aliased like the titles; its horizontal edges lie on whole
// pixels and it has no thin strokes, which would flicker on an interlaced television.
void PaintArrow(cairo_t* cr, const Button& button, const Rect& inner) {
  const int64_t side = std::min(inner.Width(), inner.Height());
  const Rect area = inner.Inset(static_cast<int>(std::max<int64_t>(2, side / 8)));
  if (area.Empty()) return;
  const double height = std::min<double>(area.Height(), area.Width() * 1.25);
  const double length = std::min<double>(area.Width(), 2.5 * height);
  const double head = std::min(length, 0.8 * height);
  const double centreX = (area.left + area.right) / 2.0;
  const double centreY = (area.top + area.bottom) / 2.0;
  const double dir = button.role == ButtonRole::kPrevious ? -1 : 1;
  const double tip = centreX + dir * length / 2;
  const double tail = centreX - dir * length / 2;
  const double base = tip - dir * head;
  auto y = [&](double offset) { return std::round(centreY + offset); };
  const double shaft = 0.22 * height;  // half the shaft's thickness

  cairo_save(cr);
  cairo_new_path(cr);
  cairo_move_to(cr, tail, y(-shaft));
  cairo_line_to(cr, base, y(-shaft));
  cairo_line_to(cr, base, y(-height / 2));
  cairo_line_to(cr, tip, centreY);
  cairo_line_to(cr, base, y(height / 2));
  cairo_line_to(cr, base, y(shaft));
  cairo_line_to(cr, tail, y(shaft));
  cairo_close_path(cr);
  const Colour& c = button.frameColour;
  cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  cairo_fill(cr);
  cairo_restore(cr);
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
  } else if (button.picture.empty() && button.role != ButtonRole::kNumbered) {
    PaintArrow(cr, button, inner);
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
