// Encodes pictures as uncompressed 24-bit Windows BMP files (BITMAPINFOHEADER, bottom-up rows
// padded to four bytes), the format the menu and mask are delivered in. gdk-pixbuf reads BMP
// but cannot write it, hence this small encoder. Pure memory work; reentrant.
#ifndef TOLVEX_RENDERER_BMPWRITER_H
#define TOLVEX_RENDERER_BMPWRITER_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace tolvex::render {

// How the pixels of a row are laid out in memory.
enum class PixelLayout {
  kCairo,  // 32-bit native-endian words 0xAARRGGBB, premultiplied (cairo RGB24 or ARGB32,
           // GDI+ 32bppRGB or 32bppPARGB)
  kRgb,    // three bytes r, g, b
  kRgba,   // four bytes r, g, b, a, not premultiplied (gdk-pixbuf)
};

struct PixelRows {
  int width = 0;
  int height = 0;
  const uint8_t* data = nullptr;
  ptrdiff_t stride = 0;  // bytes from one row to the next
  PixelLayout layout = PixelLayout::kRgb;
};

// The BMP file of `rows`; transparency is flattened onto black. Empty when the picture is
// empty or too large for the format's 32-bit sizes.
std::string EncodeBmp24(const PixelRows& rows);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_BMPWRITER_H
