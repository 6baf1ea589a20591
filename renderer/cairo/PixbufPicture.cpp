// Decoding at the drawn size through a gdk-pixbuf loader of the one format the header names
// (the file read and checked by ReadPictureFile first), with the rows it delivers counted,
// resampling, the conversion into cairo's premultiplied pixel format, ImageResize's encoding,
// and plain RGB rows and PNG files for the menutemplate tool.
#include "renderer/cairo/PixbufPicture.h"

#include "renderer/BmpWriter.h"
#include "renderer/Failure.h"
#include "renderer/Paths.h"

namespace tolvex::render {
namespace {

struct ObjectUnref {
  void operator()(gpointer p) const { g_object_unref(p); }
};

// What the loader is asked for, whether what it announced was refused, and the rows it
// delivered.
struct Request {
  int width = 0;  // 0: the picture's own size
  int height = 0;
  bool tooLarge = false;
  long long rows = 0;
};

void OnSizePrepared(GdkPixbufLoader* loader, int width, int height, gpointer data) {
  auto* request = static_cast<Request*>(data);
  // The header was checked before; this guards against a decoder that finds another size.
  if (!SizeAcceptable(width, height)) {
    request->tooLarge = true;
    gdk_pixbuf_loader_set_size(loader, 1, 1);
  } else if (request->width > 0) {
    gdk_pixbuf_loader_set_size(loader, request->width, request->height);
  }
}

// A decoder may end a picture that stops early without an error; the rows it delivered tell
// (an interlaced picture delivers some rows more than once).
void OnAreaUpdated(GdkPixbufLoader*, int, int, int, int height, gpointer data) {
  static_cast<Request*>(data)->rows += height;
}

std::string TakeMessage(GError* error, const char* otherwise) {
  if (error == nullptr) return otherwise;
  std::string message = error->message;
  g_error_free(error);
  return message;
}

// Decodes `file` with the loader of its format, at `request`'s size when it has one and the
// format can be decoded smaller (JPEG); other formats are decoded at their own size. What keeps
// it from decoding goes to `why`, as a phrase about the picture.
Status DecodeFile(const PictureFile& file, Request request, PixbufPtr* out, std::string* why) {
  // gdk-pixbuf would decode the others whole and scale them at the end, announcing all rows at
  // once: the caller resamples them instead, and the rows delivered still tell a cut picture.
  // (A JPEG the loader scales is whole by this count; its end-of-image marker, checked with
  // the header, tells a cut one.)
  if (file.header.format != PictureFormat::kJpeg) request.width = request.height = 0;
  GError* error = nullptr;
  std::unique_ptr<GdkPixbufLoader, ObjectUnref> loader(
      gdk_pixbuf_loader_new_with_type(LoaderName(file.header.format), &error));
  if (!loader) {
    *why = "cannot be decoded: " + TakeMessage(error, "no decoder");
    return Status::kPictureUnreadable;
  }
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(OnSizePrepared), &request);
  g_signal_connect(loader.get(), "area-updated", G_CALLBACK(OnAreaUpdated), &request);
  const auto* bytes = reinterpret_cast<const guchar*>(file.bytes.data());
  bool ok = gdk_pixbuf_loader_write(loader.get(), bytes, file.bytes.size(), &error);
  // Closing tells the decoder that no more bytes come, so a truncated file is noticed.
  ok = gdk_pixbuf_loader_close(loader.get(), ok ? &error : nullptr) && ok;
  const std::string reason = error != nullptr ? ": " + TakeMessage(error, "") : "";
  if (request.tooLarge) {
    *why = "is too large";
    return Status::kPictureTooLarge;
  }
  GdkPixbuf* picture = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (!ok || picture == nullptr || request.rows < gdk_pixbuf_get_height(picture)) {
    *why = "is truncated or corrupt" + reason;
    return Status::kPictureUnreadable;
  }
  out->reset(GDK_PIXBUF(g_object_ref(picture)));
  return Status::kOk;
}

// Reads, checks and decodes the picture at `path`, at `request`'s size when it has one.
Status Decode(const std::string& path, Request request, PixbufPtr* out) {
  PictureFile file;
  if (const Status s = ReadPictureFile(path, &file); s != Status::kOk) return s;
  std::string why;
  if (const Status s = DecodeFile(file, request, out, &why); s != Status::kOk) {
    return Fail(s, "picture " + path + " " + why);
  }
  return Status::kOk;
}

cairo_status_t AppendPng(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

Status LoadPicture(const std::string& path, PixbufPtr* out) {
  return Decode(path, Request{}, out);
}

Status LoadPictureAt(const std::string& path, int width, int height, PixbufPtr* out) {
  if (!SizeAcceptable(width, height)) {
    return Fail(Status::kBadArgument, "cannot draw picture " + path + " at " +
                                          std::to_string(width) + " x " + std::to_string(height));
  }
  PixbufPtr picture;
  if (const Status s = Decode(path, Request{width, height, false, 0}, &picture); s != Status::kOk) {
    return s;
  }
  if (gdk_pixbuf_get_width(picture.get()) == width &&
      gdk_pixbuf_get_height(picture.get()) == height) {
    *out = std::move(picture);
    return Status::kOk;
  }
  return Resample(picture.get(), width, height, out);
}

Status Resample(const GdkPixbuf* picture, int width, int height, PixbufPtr* out) {
  if (!SizeAcceptable(width, height)) {
    return Fail(Status::kBadArgument,
                "cannot resample to " + std::to_string(width) + " x " + std::to_string(height));
  }
  GdkPixbuf* scaled = gdk_pixbuf_scale_simple(picture, width, height, GDK_INTERP_BILINEAR);
  if (scaled == nullptr) return Fail(Status::kDrawingFailed, "out of memory while resampling");
  out->reset(scaled);
  return Status::kOk;
}

Status ToSurface(const GdkPixbuf* picture, SurfacePtr* out) {
  const int width = gdk_pixbuf_get_width(picture);
  const int height = gdk_pixbuf_get_height(picture);
  const int channels = gdk_pixbuf_get_n_channels(picture);
  const bool alpha = gdk_pixbuf_get_has_alpha(picture);
  if (gdk_pixbuf_get_bits_per_sample(picture) != 8 || channels < (alpha ? 4 : 3)) {
    return Fail(Status::kPictureUnreadable, "unexpected pixel layout of a decoded picture");
  }
  SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    return Fail(Status::kDrawingFailed, "out of memory while drawing a picture");
  }

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

namespace {

// The gdk-pixbuf writer whose extensions include `extension`, or nullptr.
const char* WriterFor(const std::string& extension) {
  const char* writer = nullptr;
  GSList* formats = gdk_pixbuf_get_formats();
  for (GSList* f = formats; f != nullptr && writer == nullptr; f = f->next) {
    auto* format = static_cast<GdkPixbufFormat*>(f->data);
    if (!gdk_pixbuf_format_is_writable(format)) continue;
    gchar** extensions = gdk_pixbuf_format_get_extensions(format);
    for (gchar** e = extensions; *e != nullptr; ++e) {
      if (g_ascii_strcasecmp(*e, extension.c_str()) == 0) {
        // The format's name is static data of its loader, valid after the list is gone.
        gchar* name = gdk_pixbuf_format_get_name(format);
        writer = g_intern_string(name);
        g_free(name);
        break;
      }
    }
    g_strfreev(extensions);
  }
  g_slist_free(formats);
  return writer;
}

}  // namespace

Status DecodeRgb(const PictureFile& file, RgbPicture* out, std::string* why) {
  PixbufPtr picture;
  if (const Status s = DecodeFile(file, Request{}, &picture, why); s != Status::kOk) return s;
  if (out == nullptr) return Status::kOk;
  CopyRgbRows(gdk_pixbuf_get_width(picture.get()), gdk_pixbuf_get_height(picture.get()),
              gdk_pixbuf_read_pixels(picture.get()), gdk_pixbuf_get_rowstride(picture.get()),
              gdk_pixbuf_get_n_channels(picture.get()), false, out);
  return Status::kOk;
}

Status EncodePng(const RgbPicture& picture, std::string* png, std::string* why) {
  // cairo keeps RGB24 as native-endian 32-bit words; its PNG writer drops the unused byte.
  SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width, picture.height));
  cairo_surface_flush(surface.get());
  unsigned char* data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; data != nullptr && y < picture.height; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < picture.width; ++x) {
      const uint8_t* p = picture.At(x, y);
      row[x] = (uint32_t{p[0]} << 16) | (uint32_t{p[1]} << 8) | p[2];
    }
  }
  cairo_surface_mark_dirty(surface.get());
  png->clear();
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface.get(), AppendPng, png);
  if (status == CAIRO_STATUS_SUCCESS) return Status::kOk;
  *why = cairo_status_to_string(status);
  return Status::kDrawingFailed;
}

Status CheckPictureDecodes(const std::string& path) {
  PixbufPtr unused;
  return LoadPicture(path, &unused);
}

Status EncodeResized(const std::string& source, int width, int height, const std::string& target,
                     std::string* bytes) {
  PixbufPtr picture;
  if (const Status s = LoadPictureAt(source, width, height, &picture); s != Status::kOk) return s;
  const std::string extension = ExtensionOf(target);
  if (const char* writer = extension.empty() || extension == "bmp" ? nullptr
                                                                   : WriterFor(extension)) {
    gchar* buffer = nullptr;
    gsize size = 0;
    GError* error = nullptr;
    const bool ok = gdk_pixbuf_save_to_buffer(picture.get(), &buffer, &size, writer, &error,
                                              nullptr);
    if (error != nullptr) g_error_free(error);
    if (!ok) return Fail(Status::kOutputUnwritable, std::string("cannot encode ") + target);
    bytes->assign(buffer, size);
    g_free(buffer);
    return Status::kOk;
  }
  const bool alpha = gdk_pixbuf_get_has_alpha(picture.get());
  *bytes = EncodeBmp24(PixelRows{gdk_pixbuf_get_width(picture.get()),
                                 gdk_pixbuf_get_height(picture.get()),
                                 gdk_pixbuf_read_pixels(picture.get()),
                                 gdk_pixbuf_get_rowstride(picture.get()),
                                 alpha ? PixelLayout::kRgba : PixelLayout::kRgb});
  if (bytes->empty()) return Fail(Status::kDrawingFailed, "cannot encode " + target);
  return Status::kOk;
}

}  // namespace tolvex::render
