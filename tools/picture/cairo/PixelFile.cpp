// Picture files as pixels with gdk-pixbuf, PNGs written by cairo (see PixelFile.h).
#include "tools/picture/PixelFile.h"

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>

namespace menutool {
namespace {

struct ObjectUnref {
  void operator()(gpointer p) const { g_object_unref(p); }
};

std::string TakeMessage(GError* error, const char* otherwise) {
  if (!error) return otherwise;
  std::string message = error->message;
  g_error_free(error);
  return message;
}

// A decoder may end a picture that stops early without an error; the rows it delivered tell
// (an interlaced picture delivers some rows more than once).
void OnAreaUpdated(GdkPixbufLoader*, int, int, int, int height, gpointer rows) {
  *static_cast<long long*>(rows) += height;
}

cairo_status_t AppendPng(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

bool ReadPixels(const std::string& path, Pixels* out, std::string* why) {
  GError* error = nullptr;
  std::unique_ptr<GdkPixbuf, ObjectUnref> picture(gdk_pixbuf_new_from_file(path.c_str(), &error));
  if (!picture) {
    *why = TakeMessage(error, "unreadable");
    return false;
  }
  const int w = gdk_pixbuf_get_width(picture.get()), h = gdk_pixbuf_get_height(picture.get());
  const int channels = gdk_pixbuf_get_n_channels(picture.get());
  const int stride = gdk_pixbuf_get_rowstride(picture.get());
  const guchar* pixels = gdk_pixbuf_read_pixels(picture.get());
  out->width = w;
  out->height = h;
  out->rgb.resize(static_cast<size_t>(w) * h * 3);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const guchar* p = pixels + static_cast<size_t>(y) * stride + static_cast<size_t>(x) * channels;
      uint8_t* to = out->At(x, y);
      to[0] = p[0];
      to[1] = p[1];
      to[2] = p[2];
    }
  return true;
}

bool EncodePng(const Pixels& pixels, std::string* png, std::string* why) {
  // cairo keeps RGB24 as native-endian 32-bit words.
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, pixels.width, pixels.height);
  cairo_surface_flush(surface);
  unsigned char* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; data && y < pixels.height; ++y)
    for (int x = 0; x < pixels.width; ++x) {
      const uint8_t* p = pixels.At(x, y);
      reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride)[x] =
          (uint32_t{p[0]} << 16) | (uint32_t{p[1]} << 8) | p[2];
    }
  cairo_surface_mark_dirty(surface);
  png->clear();
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface, AppendPng, png);
  cairo_surface_destroy(surface);
  if (status == CAIRO_STATUS_SUCCESS) return true;
  *why = cairo_status_to_string(status);
  return false;
}

std::optional<std::string> DecodeProblem(const std::string& bytes,
                                         tolvex::render::PictureFormat format) {
  GError* error = nullptr;
  std::unique_ptr<GdkPixbufLoader, ObjectUnref> loader(
      gdk_pixbuf_loader_new_with_type(tolvex::render::LoaderName(format), &error));
  if (!loader) return "cannot be decoded: " + TakeMessage(error, "");
  long long rows = 0;
  g_signal_connect(loader.get(), "area-updated", G_CALLBACK(OnAreaUpdated), &rows);
  bool decoded = gdk_pixbuf_loader_write(
      loader.get(), reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), &error);
  decoded = gdk_pixbuf_loader_close(loader.get(), decoded ? &error : nullptr) && decoded;
  GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader.get());
  const bool whole = decoded && pixels && rows >= gdk_pixbuf_get_height(pixels);
  const std::string message = error ? ": " + TakeMessage(error, "") : "";
  if (whole) return std::nullopt;
  return "is truncated or corrupt" + message;
}

}  // namespace menutool
