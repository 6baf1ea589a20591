// Drawing the preview (see Preview.h). The mask is black except for the button areas; every
// connected group of non-black mask pixels is one area. Its pixels are tinted and a box is
// drawn round it, so that a highlight that misses its button shows at a glance. The PNG is
// made in memory and written like every other output (OutputFile.h).
#include "tools/Preview.h"

#include "tools/OutputFile.h"
#include "tools/ToolError.h"

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

struct Area {
  int left, top, right, bottom;  // right and bottom exclusive
};

// Groups the non-black pixels of the mask into 8-connected areas.
std::vector<Area> FindAreas(GdkPixbuf* mask, std::vector<bool>* marked) {
  const int w = gdk_pixbuf_get_width(mask), h = gdk_pixbuf_get_height(mask);
  const int channels = gdk_pixbuf_get_n_channels(mask), stride = gdk_pixbuf_get_rowstride(mask);
  const guchar* pixels = gdk_pixbuf_read_pixels(mask);
  marked->assign(static_cast<std::size_t>(w) * h, false);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const guchar* p = pixels + y * stride + x * channels;
      (*marked)[static_cast<std::size_t>(y) * w + x] = (p[0] | p[1] | p[2]) != 0;
    }
  std::vector<bool> seen(marked->size(), false);
  std::vector<Area> areas;
  std::vector<int> stack;
  for (int start = 0; start < w * h; ++start) {
    if (!(*marked)[start] || seen[start]) continue;
    Area area{start % w, start / w, start % w + 1, start / w + 1};
    stack.assign(1, start);
    seen[start] = true;
    while (!stack.empty()) {
      int at = stack.back(), x = at % w, y = at / w;
      stack.pop_back();
      area = {std::min(area.left, x), std::min(area.top, y), std::max(area.right, x + 1),
              std::max(area.bottom, y + 1)};
      for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
          int nx = x + dx, ny = y + dy;
          if (nx < 0 || ny < 0 || nx >= w || ny >= h) continue;
          int next = ny * w + nx;
          if ((*marked)[next] && !seen[next]) {
            seen[next] = true;
            stack.push_back(next);
          }
        }
    }
    areas.push_back(area);
  }
  return areas;
}

}  // namespace

int WritePreview(const std::string& menuPath, const std::string& maskPath,
                 const std::string& png) {
  Pixbuf menu = Load(menuPath), mask = Load(maskPath);
  const int w = gdk_pixbuf_get_width(menu.get()), h = gdk_pixbuf_get_height(menu.get());
  if (gdk_pixbuf_get_width(mask.get()) != w || gdk_pixbuf_get_height(mask.get()) != h)
    throw ToolError(maskPath, "the mask is not the size of the menu picture");

  std::vector<bool> marked;
  std::vector<Area> areas = FindAreas(mask.get(), &marked);

  cairo_surface_t* surface = ToSurface(menu.get());
  cairo_t* cr = cairo_create(surface);
  // The mask's pixels, tinted magenta at 60% over the menu.
  cairo_surface_t* tint = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
  cairo_surface_flush(tint);
  unsigned char* data = cairo_image_surface_get_data(tint);
  const int tintStride = cairo_image_surface_get_stride(tint);
  const uint32_t magenta = 0x99990099u;  // premultiplied: alpha 0x99, red 0x99, blue 0x99
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      reinterpret_cast<uint32_t*>(data + y * tintStride)[x] =
          marked[static_cast<std::size_t>(y) * w + x] ? magenta : 0u;
  cairo_surface_mark_dirty(tint);
  cairo_set_source_surface(cr, tint, 0, 0);
  cairo_paint(cr);
  cairo_surface_destroy(tint);
  cairo_set_source_rgb(cr, 0.0, 1.0, 1.0);  // a dashed cyan box round each area
  cairo_set_line_width(cr, 1.0);
  const double dash[] = {4.0, 3.0};
  cairo_set_dash(cr, dash, 2, 0);
  for (const Area& a : areas) {
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
  return static_cast<int>(areas.size());
}

}  // namespace menutool
