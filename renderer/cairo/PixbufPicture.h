// Decoding pictures with gdk-pixbuf, at the size they are drawn, and handing them to cairo.
// Owns the GObject/cairo lifetimes of pictures; draws nothing. Reentrant.
#ifndef TOLVEX_RENDERER_CAIRO_PIXBUFPICTURE_H
#define TOLVEX_RENDERER_CAIRO_PIXBUFPICTURE_H

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>
#include <string>

#include "renderer/Picture.h"

namespace tolvex::render {

struct PixbufUnref {
  void operator()(GdkPixbuf* p) const { g_object_unref(p); }
};
struct SurfaceDestroy {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using PixbufPtr = std::unique_ptr<GdkPixbuf, PixbufUnref>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

// Decodes the picture at `path` at its own size.
Status LoadPicture(const std::string& path, PixbufPtr* out);

// Decodes the picture at `path` at exactly `width` x `height` (the aspect is not kept: a
// picture fills the rectangle it is given). Formats that can be decoded at a smaller size
// (JPEG) are, so that memory follows the size drawn rather than the size stored.
Status LoadPictureAt(const std::string& path, int width, int height, PixbufPtr* out);

// `picture` resampled to `width` x `height`, bilinear (area-averaging when reducing).
Status Resample(const GdkPixbuf* picture, int width, int height, PixbufPtr* out);

// The picture as a cairo surface (ARGB32, premultiplied), ready to paint.
Status ToSurface(const GdkPixbuf* picture, SurfacePtr* out);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_CAIRO_PIXBUFPICTURE_H
