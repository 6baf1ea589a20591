// Loading pictures: the file read whole within a size limit (InputFile), its format and claimed
// size checked from the header (PictureHeader: PNG, JPEG and BMP only), then decoded through
// gdk-pixbuf at the size it is drawn, resampling, and handing the result to cairo. Owns the
// GObject/cairo lifetimes of pictures; draws nothing. Reentrant.
#ifndef TOLVEX_RENDERER_PICTURE_H
#define TOLVEX_RENDERER_PICTURE_H

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <memory>
#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// Pictures whose header claims more pixels than this, or a side longer than kMaxPictureSide,
// are refused before decoding. A 6000 x 4000 camera photo fits; a PNG or BMP this large takes
// about 100 MB while it is decoded, a JPEG far less (it is decoded at the size drawn).
inline constexpr int64_t kMaxPicturePixels = 25LL * 1000 * 1000;
inline constexpr int64_t kMaxPictureSide = 16384;

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

#endif  // TOLVEX_RENDERER_PICTURE_H
