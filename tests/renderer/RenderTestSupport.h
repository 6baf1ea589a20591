// Helpers of the renderer tests: a template written key by key through the profile functions,
// pictures written, and output pictures decoded to probe pixel by pixel (TestPictures.cpp).
#ifndef TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H
#define TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "support/TempDir.h"

namespace tolvex::test {

// Whether `text` contains `part`; EXPECT_PRED2(Has, text, part) prints both on failure.
inline bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

using Rgb = std::array<uint8_t, 3>;
inline constexpr Rgb kBlack{0, 0, 0}, kWhite{255, 255, 255}, kRed{255, 0, 0}, kBlue{0, 0, 255};

struct Box {
  int left, top, right, bottom;  // right and bottom exclusive, as in the template
  auto Tie() const { return std::tie(left, top, right, bottom); }
  bool operator==(const Box& o) const { return Tie() == o.Tie(); }
  bool operator<(const Box& o) const { return Tie() < o.Tie(); }
};
inline std::ostream& operator<<(std::ostream& out, const Box& b) {
  return out << '{' << b.left << ", " << b.top << ", " << b.right << ", " << b.bottom << '}';
}
// `b` grown by `by` pixels on every side (shrunk when negative).
inline Box Grow(Box b, int by) { return Box{b.left - by, b.top - by, b.right + by, b.bottom + by}; }
// The pixels of a frame ring `t` thick along the inside of `b`.
inline int Ring(Box b, int t) {
  const int w = b.right - b.left, h = b.bottom - b.top;
  return w * h - (w - 2 * t) * (h - 2 * t);
}

// A decoded picture; no pixels when it cannot be decoded.
struct Picture {
  static Picture Load(const std::string& path);
  Rgb At(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x]; }
  int width = 0, height = 0;
  std::vector<Rgb> pixels;
};

// A picture of `width` x `height` with the colour `colour(x, y)`: a BMP file when `path` ends
// in ".bmp", else a PNG file.
void WritePicture(const std::string& path, int width, int height,
                  const std::function<Rgb(int x, int y)>& colour);
inline void WriteSolidPicture(const std::string& path, int width, int height, Rgb colour) {
  WritePicture(path, width, height, [&](int, int) { return colour; });
}

// How many pixels of `box` are exactly `colour`.
inline int CountPixels(const Picture& picture, Box box, Rgb colour) {
  int count = 0;
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) count += picture.At(x, y) == colour;
  }
  return count;
}

// The pixels of `box` that are not `background`: count, bounds, and how many are not `ink`
// either (anti-aliased edges).
struct Ink {
  int count = 0, partial = 0;
  Box bounds{0, 0, 0, 0};
};
inline Ink FindInk(const Picture& picture, Box box, Rgb background, Rgb ink) {
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

class TestTemplate {
 public:
  explicit TestTemplate(const TempDir& dir, const std::string& name = "menu.ini")
      : m_path(dir.File(name)) {}

  char* path() { return m_path.data(); }
  void Set(const std::string& section, const std::string& key, const std::string& value) {
    ASSERT_TRUE(WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                           m_path.c_str()));
  }
  void Page(const std::string& key, const std::string& value) { Set("Background", key, value); }
  void Page(const std::vector<std::pair<std::string, std::string>>& keys) {
    for (const auto& [key, value] : keys) Page(key, value);
  }
  // Selects the layout of `count` buttons ("CurrentNumberOfButton").
  void Count(int count) {
    Page("CurrentNumberOfButton", std::to_string(count));
    m_layout = "NumOfButton" + std::to_string(count);
  }
  // A per-button key with the index at the end: Key(2, "ButtonBmp", ...) is ButtonBmp2.
  void Key(int index, const std::string& key, const std::string& value) {
    Set(m_layout, key + std::to_string(index), value);
  }
  // Numbered button `index` of the layout: its edges and its frame.
  void Button(int index, Box box, int thickness, Rgb frame = kWhite) {
    const std::string i = std::to_string(index);
    Write(m_layout, "ButtonPosition" + i, "Button", i, box, thickness, frame);
  }
  // The previous or next button, switched on.
  void Nav(bool next, Box box, int thickness, Rgb frame = kWhite) {
    Page(next ? "AddNextButton" : "AddPrevButton", "TRUE");
    const std::string p = next ? "ButtonNext" : "ButtonPrev";
    Write(next ? "NextButton" : "PrevButton", p + "ButtonPosition", p, "", box, thickness, frame);
  }

 private:
  // The edges after `position` ("_left"...) and the frame keys `prefix` + name + `suffix`.
  void Write(const std::string& section, const std::string& position, const std::string& prefix,
             const std::string& suffix, Box box, int thickness, Rgb frame) {
    const std::pair<const char*, int> keys[] = {
        {"_left", box.left},     {"_right", box.right},         {"_top", box.top},
        {"_bottom", box.bottom}, {"FrameThickness", thickness}, {"Frame_R", frame[0]},
        {"Frame_G", frame[1]},   {"Frame_B", frame[2]}};
    for (const auto& [name, v] : keys) {
      Set(section, name[0] == '_' ? position + name : prefix + name + suffix, std::to_string(v));
    }
  }

  std::string m_path;
  std::string m_layout;
};

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDERER_RENDERTESTSUPPORT_H
