// Encodes pictures as uncompressed 24-bit Windows BMP files.
#include "renderer/BmpWriter.h"

#include <cstring>

namespace tolvex::render {
namespace {

constexpr uint32_t kFileHeaderSize = 14;
constexpr uint32_t kInfoHeaderSize = 40;
// 72 dpi, as most writers record it; nothing reads it for a menu.
constexpr uint32_t kPixelsPerMetre = 2835;

void Put16(std::string& out, size_t at, uint16_t v) {
  out[at] = static_cast<char>(v & 0xff);
  out[at + 1] = static_cast<char>(v >> 8);
}

void Put32(std::string& out, size_t at, uint32_t v) {
  for (int i = 0; i < 4; ++i) out[at + i] = static_cast<char>((v >> (8 * i)) & 0xff);
}

// One pixel as b, g, r bytes.
inline void Pixel(const uint8_t* in, PixelLayout layout, char* out) {
  switch (layout) {
    case PixelLayout::kCairo: {
      uint32_t word;
      std::memcpy(&word, in, sizeof word);
      // Premultiplied: the stored components already lie over black.
      out[0] = static_cast<char>(word & 0xff);
      out[1] = static_cast<char>((word >> 8) & 0xff);
      out[2] = static_cast<char>((word >> 16) & 0xff);
      return;
    }
    case PixelLayout::kRgb:
      out[0] = static_cast<char>(in[2]);
      out[1] = static_cast<char>(in[1]);
      out[2] = static_cast<char>(in[0]);
      return;
    case PixelLayout::kRgba: {
      const unsigned a = in[3];
      out[0] = static_cast<char>((in[2] * a + 127) / 255);
      out[1] = static_cast<char>((in[1] * a + 127) / 255);
      out[2] = static_cast<char>((in[0] * a + 127) / 255);
      return;
    }
  }
}

size_t BytesPerPixel(PixelLayout layout) {
  return layout == PixelLayout::kRgb ? 3 : 4;
}

}  // namespace

std::string EncodeBmp24(const PixelRows& rows) {
  if (rows.width <= 0 || rows.height <= 0 || rows.data == nullptr) return std::string();
  const uint64_t rowBytes = (static_cast<uint64_t>(rows.width) * 3 + 3) & ~uint64_t{3};
  const uint64_t imageBytes = rowBytes * static_cast<uint64_t>(rows.height);
  const uint64_t fileBytes = kFileHeaderSize + kInfoHeaderSize + imageBytes;
  if (fileBytes > UINT32_MAX) return std::string();

  std::string out(static_cast<size_t>(fileBytes), '\0');
  out[0] = 'B';
  out[1] = 'M';
  Put32(out, 2, static_cast<uint32_t>(fileBytes));
  Put32(out, 10, kFileHeaderSize + kInfoHeaderSize);  // offset of the pixels
  Put32(out, 14, kInfoHeaderSize);
  Put32(out, 18, static_cast<uint32_t>(rows.width));
  Put32(out, 22, static_cast<uint32_t>(rows.height));  // positive: bottom-up rows
  Put16(out, 26, 1);                                   // planes
  Put16(out, 28, 24);                                  // bits per pixel
  Put32(out, 30, 0);                                   // BI_RGB, no compression
  Put32(out, 34, static_cast<uint32_t>(imageBytes));
  Put32(out, 38, kPixelsPerMetre);
  Put32(out, 42, kPixelsPerMetre);

  const size_t step = BytesPerPixel(rows.layout);
  char* target = out.data() + kFileHeaderSize + kInfoHeaderSize;
  for (int y = rows.height - 1; y >= 0; --y, target += rowBytes) {
    const uint8_t* in = rows.data + y * rows.stride;
    char* px = target;
    for (int x = 0; x < rows.width; ++x, in += step, px += 3) Pixel(in, rows.layout, px);
  }
  return out;
}

}  // namespace tolvex::render
