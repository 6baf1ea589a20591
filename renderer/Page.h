// The model of one menu page as both renderers see it: canvas size, background, the page title
// and the visible buttons with their rectangles, pictures, frames and titles. Plain data, filled
// by TemplateReader before any drawing starts; nothing here touches a file or draws.
#ifndef TOLVEX_RENDERER_PAGE_H
#define TOLVEX_RENDERER_PAGE_H

#include <cstdint>
#include <string>
#include <vector>

namespace tolvex::render {

struct Colour {
  uint8_t r = 0;
  uint8_t g = 0;
  uint8_t b = 0;
};

// A rectangle in canvas pixels. As with the Win32 RECT the template stores, right and bottom
// are exclusive: the rectangle covers columns left..right-1 and rows top..bottom-1.
struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  // Computed in 64 bits: the edges of a template may lie anywhere in the 32-bit range.
  int64_t Width() const { return int64_t{right} - left; }
  int64_t Height() const { return int64_t{bottom} - top; }
  bool Empty() const { return right <= left || bottom <= top; }
  // Only for `by` up to half the smaller side (see RingWidth), which keeps the edges in range.
  Rect Inset(int by) const { return Rect{left + by, top + by, right - by, bottom - by}; }
  Rect Intersect(const Rect& o) const;
};

// The font size is the em height in canvas pixels; titles without a size get this one.
inline constexpr int kDefaultTitleSizePx = 24;
// Sizes outside this range are clamped: a title taller than the page is a typing error.
inline constexpr int kMaxTitleSizePx = 576;

struct Title {
  std::string text;  // empty: nothing is drawn
  bool hasPosition = false;
  int x = 0;  // top-left corner of the text's layout box, when hasPosition
  int y = 0;
  std::string fontName;  // empty: the default family
  int sizePx = kDefaultTitleSizePx;
  bool italic = false;
  bool bold = false;
  bool underline = false;
  Colour colour{255, 255, 255};
};

struct Button {
  Rect rect;
  std::string picture;       // full path, empty when none is named
  std::string framePicture;  // full path, empty when none is named
  int frameThickness = 0;    // pixels, >= 0
  Colour frameColour{255, 255, 255};
  Title title;  // the previous and next buttons have none
};

// How thick a frame ring of `thickness` pixels is on `rect`: never more than fills it.
inline int RingWidth(const Rect& rect, int thickness) {
  const int64_t side = rect.Width() < rect.Height() ? rect.Width() : rect.Height();
  const int64_t most = (side + 1) / 2;
  return thickness < most ? thickness : static_cast<int>(most);
}

struct Page {
  int width = 720;
  int height = 576;
  std::string background;  // full path, empty when none is named
  Title title;
  // The numbered buttons in ascending index order, then the previous and the next button.
  std::vector<Button> buttons;

  Rect Canvas() const { return Rect{0, 0, width, height}; }
};

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_PAGE_H
