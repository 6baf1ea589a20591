// Helpers of the renderer tests.
#include "renderer/RenderTestSupport.h"

#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "renderer/BmpWriter.h"

namespace tolvex::test {

std::ostream& operator<<(std::ostream& out, const Rgb& c) {
  return out << "rgb(" << int(c.r) << "," << int(c.g) << "," << int(c.b) << ")";
}

Picture Picture::Load(const std::string& path) {
  Picture picture;
  GdkPixbuf* pixbuf = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
  if (pixbuf != nullptr) picture.m_pixbuf.reset(pixbuf, g_object_unref);
  return picture;
}

int Picture::Width() const { return gdk_pixbuf_get_width(m_pixbuf.get()); }
int Picture::Height() const { return gdk_pixbuf_get_height(m_pixbuf.get()); }

Rgb Picture::At(int x, int y) const {
  const guint8* p = gdk_pixbuf_read_pixels(m_pixbuf.get()) +
                    y * gdk_pixbuf_get_rowstride(m_pixbuf.get()) +
                    x * gdk_pixbuf_get_n_channels(m_pixbuf.get());
  return Rgb{p[0], p[1], p[2]};
}

void WriteSolidPicture(const std::string& path, int width, int height, Rgb colour) {
  GdkPixbuf* pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
  ASSERT_NE(pixbuf, nullptr);
  gdk_pixbuf_fill(pixbuf, (guint32(colour.r) << 24) | (guint32(colour.g) << 16) |
                              (guint32(colour.b) << 8) | 0xff);
  const std::string extension = path.substr(path.find_last_of('.') + 1);
  if (extension == "bmp") {
    WriteFile(path, render::EncodeBmp24(render::PixelRows{
                        width, height, gdk_pixbuf_read_pixels(pixbuf),
                        gdk_pixbuf_get_rowstride(pixbuf), render::PixelLayout::kRgb}));
  } else {
    const char* type = extension == "png" ? "png" : "jpeg";
    EXPECT_TRUE(gdk_pixbuf_save(pixbuf, path.c_str(), type, nullptr, nullptr));
  }
  g_object_unref(pixbuf);
}

TestTemplate::TestTemplate(const TempDir& dir, const std::string& name)
    : m_dir(dir.path()), m_path(dir.File(name)) {}

void TestTemplate::Set(const std::string& section, const std::string& key,
                       const std::string& value) {
  ASSERT_TRUE(WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                         m_path.c_str()));
}

void TestTemplate::SetButtonCount(int count) {
  SetBackground("CurrentNumberOfButton", std::to_string(count));
  m_layout = "NumOfButton" + std::to_string(count);
}

void TestTemplate::SetButtonRect(int index, Box box) {
  const std::string i = std::to_string(index);
  Set(m_layout, "ButtonPosition" + i + "_left", std::to_string(box.left));
  Set(m_layout, "ButtonPosition" + i + "_right", std::to_string(box.right));
  Set(m_layout, "ButtonPosition" + i + "_top", std::to_string(box.top));
  Set(m_layout, "ButtonPosition" + i + "_bottom", std::to_string(box.bottom));
}

void TestTemplate::SetButtonKey(int index, const std::string& key, const std::string& value) {
  Set(m_layout, key + std::to_string(index), value);
}

void TestTemplate::SetButtonFrame(int index, int thickness, Rgb colour) {
  SetButtonKey(index, "ButtonFrameThickness", std::to_string(thickness));
  SetButtonKey(index, "ButtonFrame_R", std::to_string(colour.r));
  SetButtonKey(index, "ButtonFrame_G", std::to_string(colour.g));
  SetButtonKey(index, "ButtonFrame_B", std::to_string(colour.b));
}

void TestTemplate::SetNavButton(bool next, Box box, int thickness, Rgb colour) {
  const std::string section = next ? "NextButton" : "PrevButton";
  const std::string p = next ? "ButtonNext" : "ButtonPrev";
  SetBackground(next ? "AddNextButton" : "AddPrevButton", "TRUE");
  Set(section, p + "ButtonPosition_left", std::to_string(box.left));
  Set(section, p + "ButtonPosition_right", std::to_string(box.right));
  Set(section, p + "ButtonPosition_top", std::to_string(box.top));
  Set(section, p + "ButtonPosition_bottom", std::to_string(box.bottom));
  Set(section, p + "FrameThickness", std::to_string(thickness));
  Set(section, p + "Frame_R", std::to_string(colour.r));
  Set(section, p + "Frame_G", std::to_string(colour.g));
  Set(section, p + "Frame_B", std::to_string(colour.b));
}

std::string TestTemplate::Get(const std::string& section, const std::string& key) const {
  char buffer[1000];
  GetPrivateProfileStringA(section.c_str(), key.c_str(), "<missing>", buffer, sizeof buffer,
                           m_path.c_str());
  return buffer;
}

int CountPixels(const Picture& picture, Box box, Rgb colour) {
  int count = 0;
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) count += picture.At(x, y) == colour;
  }
  return count;
}

Ink FindInk(const Picture& picture, Box box, Rgb background, Rgb ink) {
  Ink found;
  found.bounds = Box{box.right, box.bottom, box.left, box.top};
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) {
      const Rgb c = picture.At(x, y);
      if (c == background) continue;
      ++found.count;
      found.partial += c != ink;
      found.bounds.left = std::min(found.bounds.left, x);
      found.bounds.top = std::min(found.bounds.top, y);
      found.bounds.right = std::max(found.bounds.right, x + 1);
      found.bounds.bottom = std::max(found.bounds.bottom, y + 1);
    }
  }
  return found;
}

}  // namespace tolvex::test
