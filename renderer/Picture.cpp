// Loading pictures through gdk-pixbuf, with the guard against absurd sizes, resampling, and the
// conversion into cairo's premultiplied pixel format.
#include "renderer/Picture.h"

#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

// The size the header claims, read without decoding the pixels: a 100000 x 100000 BMP of a
// few bytes must be refused here and not by running out of memory.
Status CheckSize(const std::string& path) {
  int width = 0;
  int height = 0;
  if (gdk_pixbuf_get_file_info(path.c_str(), &width, &height) == nullptr || width <= 0 ||
      height <= 0) {
    return Fail(Status::kPictureUnreadable, "cannot read picture " + path);
  }
  if (static_cast<int64_t>(width) * height > kMaxPicturePixels) {
    return Fail(Status::kPictureTooLarge, "picture " + path + " is too large");
  }
  return Status::kOk;
}

bool SizeAcceptable(int width, int height) {
  return width > 0 && height > 0 && static_cast<int64_t>(width) * height <= kMaxPicturePixels;
}

}  // namespace

Status LoadPicture(const std::string& path, PixbufPtr* out) {
  if (const Status s = CheckSize(path); s != Status::kOk) return s;
  GError* error = nullptr;
  GdkPixbuf* picture = gdk_pixbuf_new_from_file(path.c_str(), &error);
  if (error != nullptr) g_error_free(error);
  if (picture == nullptr) return Fail(Status::kPictureUnreadable, "cannot decode picture " + path);
  out->reset(picture);
  return Status::kOk;
}

Status LoadPictureAt(const std::string& path, int width, int height, PixbufPtr* out) {
  if (!SizeAcceptable(width, height)) return Status::kBadArgument;
  PixbufPtr picture;
  if (const Status s = LoadPicture(path, &picture); s != Status::kOk) return s;
  return Resample(picture.get(), width, height, out);
}

Status Resample(const GdkPixbuf* picture, int width, int height, PixbufPtr* out) {
  if (!SizeAcceptable(width, height)) return Status::kBadArgument;
  GdkPixbuf* scaled = gdk_pixbuf_scale_simple(picture, width, height, GDK_INTERP_BILINEAR);
  if (scaled == nullptr) return Status::kDrawingFailed;
  out->reset(scaled);
  return Status::kOk;
}

Status ToSurface(const GdkPixbuf* picture, SurfacePtr* out) {
  const int width = gdk_pixbuf_get_width(picture);
  const int height = gdk_pixbuf_get_height(picture);
  const int channels = gdk_pixbuf_get_n_channels(picture);
  const bool alpha = gdk_pixbuf_get_has_alpha(picture);
  if (gdk_pixbuf_get_bits_per_sample(picture) != 8 || channels < (alpha ? 4 : 3)) {
    return Status::kPictureUnreadable;
  }
  SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return Status::kDrawingFailed;

  const guint8* source = gdk_pixbuf_read_pixels(picture);
  const int sourceStride = gdk_pixbuf_get_rowstride(picture);
  unsigned char* target = cairo_image_surface_get_data(surface.get());
  const int targetStride = cairo_image_surface_get_stride(surface.get());
  cairo_surface_flush(surface.get());
  for (int y = 0; y < height; ++y) {
    const guint8* in = source + static_cast<ptrdiff_t>(y) * sourceStride;
    auto* row = reinterpret_cast<uint32_t*>(target + static_cast<ptrdiff_t>(y) * targetStride);
    for (int x = 0; x < width; ++x, in += channels) {
      const uint32_t a = alpha ? in[3] : 255;
      // cairo wants premultiplied components in a native-endian 32-bit word.
      const uint32_t r = (in[0] * a + 127) / 255;
      const uint32_t g = (in[1] * a + 127) / 255;
      const uint32_t b = (in[2] * a + 127) / 255;
      row[x] = (a << 24) | (r << 16) | (g << 8) | b;
    }
  }
  cairo_surface_mark_dirty(surface.get());
  *out = std::move(surface);
  return Status::kOk;
}

}  // namespace tolvex::render
