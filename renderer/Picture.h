// Loading pictures: decoding through gdk-pixbuf (BMP, PNG, JPEG and whatever loaders are
// installed), the guard against absurd sizes, resampling, and handing the result to cairo.
// Owns the GObject/cairo lifetimes of pictures; draws nothing. Reentrant.
#ifndef TOLVEX_RENDERER_PICTURE_H
#define TOLVEX_RENDERER_PICTURE_H

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <memory>
#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// Pictures claiming more pixels than this are refused before decoding.
inline constexpr int64_t kMaxPicturePixels = 64LL * 1000 * 1000;

struct PixbufUnref {
  void operator()(GdkPixbuf* p) const { g_object_unref(p); }
};
struct SurfaceDestroy {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using PixbufPtr = std::unique_ptr<GdkPixbuf, PixbufUnref>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

// Decodes the picture at `path` at its own size, after checking from its header that it is
// no larger than kMaxPicturePixels.
Status LoadPicture(const std::string& path, PixbufPtr* out);

// Decodes the picture at `path` and resamples it to exactly `width` x `height` (the aspect is
// not kept: a picture fills the rectangle it is given).
Status LoadPictureAt(const std::string& path, int width, int height, PixbufPtr* out);

// `picture` resampled to `width` x `height`, bilinear (area-averaging when reducing).
Status Resample(const GdkPixbuf* picture, int width, int height, PixbufPtr* out);

// The picture as a cairo surface (ARGB32, premultiplied), ready to paint.
Status ToSurface(const GdkPixbuf* picture, SurfacePtr* out);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_PICTURE_H
