// Helpers of the renderer tests.
#include "renderer/RenderTestSupport.h"

#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "renderer/BmpWriter.h"

namespace tolvex::test {

Picture Picture::Load(const std::string& path) {
  Picture picture;
  if (GdkPixbuf* p = gdk_pixbuf_new_from_file(path.c_str(), nullptr)) {
    picture.m_pixbuf.reset(p, g_object_unref);
  }
  return picture;
}

Rgb Picture::At(int x, int y) const {
  const guint8* p = gdk_pixbuf_read_pixels(m_pixbuf.get()) +
                    y * gdk_pixbuf_get_rowstride(m_pixbuf.get()) +
                    x * gdk_pixbuf_get_n_channels(m_pixbuf.get());
  return Rgb{p[0], p[1], p[2]};
}

void WriteSolidPicture(const std::string& path, int width, int height, Rgb colour) {
  std::shared_ptr<GdkPixbuf> p(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height),
                               g_object_unref);
  gdk_pixbuf_fill(p.get(), (guint32(colour.r) << 24) | (guint32(colour.g) << 16) |
                               (guint32(colour.b) << 8) | 0xff);
  const std::string extension = path.substr(path.find_last_of('.') + 1);
  if (extension == "bmp") {
    WriteFile(path, render::EncodeBmp24(render::PixelRows{
                        width, height, gdk_pixbuf_read_pixels(p.get()),
                        gdk_pixbuf_get_rowstride(p.get()), render::PixelLayout::kRgb}));
  } else {
    const char* type = extension == "png" ? "png" : "jpeg";
    EXPECT_TRUE(gdk_pixbuf_save(p.get(), path.c_str(), type, nullptr, nullptr));
  }
}

int CountPixels(const Picture& picture, Box box, Rgb colour) {
  int count = 0;
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) count += picture.At(x, y) == colour;
  }
  return count;
}

Ink FindInk(const Picture& picture, Box box, Rgb background, Rgb ink) {
  Ink found{0, 0, Box{box.right, box.bottom, box.left, box.top}};
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) {
      const Rgb c = picture.At(x, y);
      if (c == background) continue;
      ++found.count;
      found.partial += c != ink;
      Box& b = found.bounds;
      b = Box{std::min(b.left, x), std::min(b.top, y), std::max(b.right, x + 1),
              std::max(b.bottom, y + 1)};
    }
  }
  return found;
}

void TestTemplate::Set(const std::string& section, const std::string& key,
                       const std::string& value) {
  ASSERT_TRUE(WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                         m_path.c_str()));
}

std::string TestTemplate::Get(const std::string& section, const std::string& key) const {
  char buffer[1000];
  GetPrivateProfileStringA(section.c_str(), key.c_str(), "<missing>", buffer, sizeof buffer,
                           m_path.c_str());
  return buffer;
}

void TestTemplate::Count(int count) {
  Page("CurrentNumberOfButton", std::to_string(count));
  m_layout = "NumOfButton" + std::to_string(count);
}

void TestTemplate::Key(int index, const std::string& key, const std::string& value) {
  Set(m_layout, key + std::to_string(index), value);
}

void TestTemplate::Write(const std::string& section, const std::string& position,
                         std::string (*key)(const std::string&, const std::string&),
                         const std::string& index, Box box, int thickness, Rgb frame) {
  const std::pair<const char*, int> edges[] = {
      {"_left", box.left}, {"_right", box.right}, {"_top", box.top}, {"_bottom", box.bottom}};
  for (const auto& [edge, v] : edges) Set(section, position + edge, std::to_string(v));
  const std::pair<const char*, int> frames[] = {
      {"FrameThickness", thickness}, {"Frame_R", frame.r}, {"Frame_G", frame.g}, {"Frame_B", frame.b}};
  for (const auto& [name, v] : frames) Set(section, key(name, index), std::to_string(v));
}

void TestTemplate::Button(int index, Box box, int thickness, Rgb frame) {
  const std::string i = std::to_string(index);
  Write(m_layout, "ButtonPosition" + i,
        [](const std::string& name, const std::string& n) { return "Button" + name + n; }, i, box,
        thickness, frame);
}

void TestTemplate::Nav(bool next, Box box, int thickness, Rgb frame) {
  Page(next ? "AddNextButton" : "AddPrevButton", "TRUE");
  const std::string p = next ? "ButtonNext" : "ButtonPrev";
  Write(next ? "NextButton" : "PrevButton", p + "ButtonPosition",
        [](const std::string& name, const std::string& prefix) { return prefix + name; }, p, box,
        thickness, frame);
}

}  // namespace tolvex::test
