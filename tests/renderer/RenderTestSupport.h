// Helpers of the renderer tests: a template file written key by key through the profile
// functions, solid-colour test pictures, and decoded output pictures to probe pixel by pixel.
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
std::ostream& operator<<(std::ostream& out, const Rgb& c);

inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{255, 255, 255};

// A decoded picture (by gdk-pixbuf, not by our writer) with pixel access.
class Picture {
 public:
  // Empty when the file cannot be decoded.
  static Picture Load(const std::string& path);
  bool Valid() const { return m_pixbuf != nullptr; }
  int Width() const;
  int Height() const;
  Rgb At(int x, int y) const;

 private:
  std::shared_ptr<GdkPixbuf> m_pixbuf;
};

// Writes a `width` x `height` picture of one colour; the format from the extension
// (bmp through the renderer's own encoder, png and jpg through gdk-pixbuf).
void WriteSolidPicture(const std::string& path, int width, int height, Rgb colour);

struct Box {
  int left, top, right, bottom;  // right and bottom exclusive, as in the template
};

// A template file in a temporary folder, written through WritePrivateProfileStringA.
class TestTemplate {
 public:
  explicit TestTemplate(const TempDir& dir, const std::string& name = "menu.ini");

  const std::string& path() const { return m_path; }
  char* c_path() { return m_path.data(); }
  std::string File(const std::string& name) const { return m_dir + "/" + name; }

  void Set(const std::string& section, const std::string& key, const std::string& value);
  void SetBackground(const std::string& key, const std::string& value) {
    Set("Background", key, value);
  }
  // "CurrentNumberOfButton" and the layout section name for that count.
  void SetButtonCount(int count);
  // The four edges of numbered button `index` in the current layout.
  void SetButtonRect(int index, Box box);
  // A key with the index at the end: SetButtonKey(2, "ButtonBmp", "a.png") writes ButtonBmp2.
  void SetButtonKey(int index, const std::string& key, const std::string& value);
  void SetButtonFrame(int index, int thickness, Rgb colour);
  // "PrevButton" / "NextButton" with "ButtonPrev" / "ButtonNext" keys.
  void SetNavButton(bool next, Box box, int thickness, Rgb colour);

  std::string Get(const std::string& section, const std::string& key) const;

 private:
  std::string m_dir;
  std::string m_path;
  std::string m_layout;
};

// How many pixels of `box` are exactly `colour`.
int CountPixels(const Picture& picture, Box box, Rgb colour);

// The pixels of `box` that differ from `background`: how many, their bounding box, and how
// many are neither the background nor `ink` (the anti-aliased edge).
struct Ink {
  int count = 0;
  int partial = 0;
  Box bounds{0, 0, 0, 0};
};
Ink FindInk(const Picture& picture, Box box, Rgb background, Rgb ink);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H
