// Helpers of the renderer tests: a template written key by key through the profile functions,
// solid-colour pictures, and output pictures decoded by gdk-pixbuf to probe pixel by pixel.
#ifndef TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H
#define TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <memory>
#include <string>

#include "support/TempDir.h"

namespace tolvex::test {

struct Rgb {
  uint8_t r = 0, g = 0, b = 0;
  bool operator==(const Rgb& o) const { return r == o.r && g == o.g && b == o.b; }
  bool operator!=(const Rgb& o) const { return !(*this == o); }
};
inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{255, 255, 255};

struct Box {
  int left, top, right, bottom;  // right and bottom exclusive, as in the template
};

class Picture {
 public:
  static Picture Load(const std::string& path);  // invalid when it cannot be decoded
  bool Valid() const { return m_pixbuf != nullptr; }
  int Width() const { return gdk_pixbuf_get_width(m_pixbuf.get()); }
  int Height() const { return gdk_pixbuf_get_height(m_pixbuf.get()); }
  Rgb At(int x, int y) const;

 private:
  std::shared_ptr<GdkPixbuf> m_pixbuf;
};

// A picture of one colour: bmp through the renderer's encoder, png or jpg through gdk-pixbuf.
void WriteSolidPicture(const std::string& path, int width, int height, Rgb colour);
// How many pixels of `box` are exactly `colour`.
int CountPixels(const Picture& picture, Box box, Rgb colour);

// The pixels of `box` that are not `background`: count, bounds, and how many are not `ink`
// either (anti-aliased edges).
struct Ink {
  int count = 0;
  int partial = 0;
  Box bounds{0, 0, 0, 0};
};
Ink FindInk(const Picture& picture, Box box, Rgb background, Rgb ink);

class TestTemplate {
 public:
  explicit TestTemplate(const TempDir& dir, const std::string& name = "menu.ini")
      : m_path(dir.File(name)) {}

  char* path() { return m_path.data(); }
  void Set(const std::string& section, const std::string& key, const std::string& value);
  void Page(const std::string& key, const std::string& value) { Set("Background", key, value); }
  std::string Get(const std::string& section, const std::string& key) const;

  // Selects the layout of `count` buttons ("CurrentNumberOfButton").
  void Count(int count);
  // Numbered button `index` of the layout: its edges and its frame.
  void Button(int index, Box box, int thickness, Rgb frame = kWhite);
  // A per-button key with the index at the end: Key(2, "ButtonBmp", ...) is ButtonBmp2.
  void Key(int index, const std::string& key, const std::string& value);
  // The previous or next button, switched on.
  void Nav(bool next, Box box, int thickness, Rgb frame = kWhite);

 private:
  // The edges after `position` ("_left"...) and the frame keys named by `key`.
  void Write(const std::string& section, const std::string& position,
             std::string (*key)(const std::string& name, const std::string& index),
             const std::string& index, Box box, int thickness, Rgb frame);

  std::string m_path;
  std::string m_layout;
};

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H
