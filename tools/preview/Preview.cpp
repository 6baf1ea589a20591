// Drawing the preview (see Preview.h). The mask is black except for the button bands (see
// MaskAreas.h). Their pixels are tinted and a box is drawn round each, so that a highlight that
// misses its button shows at a glance. The PNG is
// made in memory and written like every other output (OutputFile.h).
#include "tools/preview/Preview.h"

#include "tools/preview/MaskAreas.h"
#include "tools/io/OutputFile.h"
#include "tools/cli/ToolError.h"

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>
#include <string>
#include <vector>

namespace menutool {
namespace {

struct PixbufFree {
  void operator()(GdkPixbuf* p) const { g_object_unref(p); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, PixbufFree>;

Pixbuf Load(const std::string& path) {
  GError* error = nullptr;
  Pixbuf picture(gdk_pixbuf_new_from_file(path.c_str(), &error));
  if (!picture) {
    std::string why = error ? error->message : "unreadable";
    if (error) g_error_free(error);
    throw ToolError(path, "cannot read the picture: " + why);
  }
  return picture;
}

// Copies a pixbuf into a cairo surface (cairo keeps premultiplied native-endian ARGB).
cairo_surface_t* ToSurface(GdkPixbuf* pixbuf) {
  const int w = gdk_pixbuf_get_width(pixbuf), h = gdk_pixbuf_get_height(pixbuf);
  const int channels = gdk_pixbuf_get_n_channels(pixbuf), stride = gdk_pixbuf_get_rowstride(pixbuf);
  const guchar* pixels = gdk_pixbuf_read_pixels(pixbuf);
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h);
  cairo_surface_flush(surface);
  unsigned char* out = cairo_image_surface_get_data(surface);
  const int outStride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const guchar* p = pixels + y * stride + x * channels;
      reinterpret_cast<uint32_t*>(out + y * outStride)[x] =
          (uint32_t{p[0]} << 16) | (uint32_t{p[1]} << 8) | p[2];
    }
  cairo_surface_mark_dirty(surface);
  return surface;
}

cairo_status_t AppendPng(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

int WritePreview(const std::string& menuPath, const std::string& maskPath, const std::string& png,
                 const PlayerView* player) {
  Pixbuf menu = Load(menuPath);
  const MaskAreas mask = ReadMaskAreas(maskPath);
  const int w = gdk_pixbuf_get_width(menu.get()), h = gdk_pixbuf_get_height(menu.get());
  if (mask.width != w || mask.height != h)
    throw ToolError(maskPath, "the mask is not the size of the menu picture");

  cairo_surface_t* surface = ToSurface(menu.get());
  cairo_t* cr = cairo_create(surface);
  // Over the menu: what a player draws (the marked pixels inside the highlighted button's area,
  // in the highlight colour), or else every marked pixel tinted magenta at 60%. Premultiplied.
  const uint32_t paint =
      player ? 0xff000000u | uint32_t{player->r} << 16 | uint32_t{player->g} << 8 | player->b
             : 0x99990099u;
  cairo_surface_t* tint = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
  cairo_surface_flush(tint);
  unsigned char* data = cairo_image_surface_get_data(tint);
  const int tintStride = cairo_image_surface_get_stride(tint);
  auto shown = [&](int x, int y) {
    if (!mask.Marked(x, y)) return false;
    return !player || (player->highlighted < player->areas.size() &&
                       player->areas[player->highlighted].Contains(x, y));
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      reinterpret_cast<uint32_t*>(data + y * tintStride)[x] = shown(x, y) ? paint : 0u;
  cairo_surface_mark_dirty(tint);
  cairo_set_source_surface(cr, tint, 0, 0);
  cairo_paint(cr);
  cairo_surface_destroy(tint);
  cairo_set_source_rgb(cr, 0.0, 1.0, 1.0);  // a dashed cyan box round each area
  cairo_set_line_width(cr, 1.0);
  const double dash[] = {4.0, 3.0};
  cairo_set_dash(cr, dash, 2, 0);
  const std::vector<PixelBox>& boxes = player ? player->areas : mask.pieces;
  for (const PixelBox& a : boxes) {
    cairo_rectangle(cr, a.left - 2.5, a.top - 2.5, a.right - a.left + 4, a.bottom - a.top + 4);
    cairo_stroke(cr);
  }
  cairo_destroy(cr);
  std::string bytes;
  cairo_status_t status = cairo_surface_write_to_png_stream(surface, AppendPng, &bytes);
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS)
    throw ToolError(png,
                    std::string("cannot make the preview: ") + cairo_status_to_string(status));
  WriteOutputFile(png, bytes);
  return static_cast<int>(boxes.size());
}

}  // namespace menutool
