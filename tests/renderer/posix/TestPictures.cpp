// The renderer tests' pictures on POSIX: written and decoded by gdk-pixbuf.
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {

const bool kArrowsAntiAliased = true;

Picture Picture::Load(const std::string& path) {
  Picture picture;
  GdkPixbuf* p = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
  if (!p) return picture;
  picture.width = gdk_pixbuf_get_width(p), picture.height = gdk_pixbuf_get_height(p);
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const guint8* c = gdk_pixbuf_read_pixels(p) + y * gdk_pixbuf_get_rowstride(p) +
                        x * gdk_pixbuf_get_n_channels(p);
      picture.pixels.push_back(Rgb{c[0], c[1], c[2]});
    }
  }
  g_object_unref(p);
  return picture;
}

void WritePicture(const std::string& path, int width, int height,
                  const std::function<Rgb(int x, int y)>& colour) {
  std::shared_ptr<GdkPixbuf> p(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height),
                               g_object_unref);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      guint8* px = gdk_pixbuf_get_pixels(p.get()) + y * gdk_pixbuf_get_rowstride(p.get()) + x * 3;
      const Rgb c = colour(x, y);
      px[0] = c[0], px[1] = c[1], px[2] = c[2];
    }
  }
  const std::string extension = path.substr(path.find_last_of('.') + 1);
  const char* type = extension == "jpg" ? "jpeg" : extension.c_str();
  EXPECT_TRUE(gdk_pixbuf_save(p.get(), path.c_str(), type, nullptr, nullptr)) << path;
}

}  // namespace tolvex::test
