// Telling a picture's format and claimed size from its header.
#include "renderer/PictureHeader.h"

namespace tolvex::render {
namespace {

uint32_t Big16(std::string_view b, size_t at) {
  return (uint32_t{static_cast<uint8_t>(b[at])} << 8) | static_cast<uint8_t>(b[at + 1]);
}
uint32_t Big32(std::string_view b, size_t at) { return (Big16(b, at) << 16) | Big16(b, at + 2); }
uint32_t Little16(std::string_view b, size_t at) {
  return (uint32_t{static_cast<uint8_t>(b[at + 1])} << 8) | static_cast<uint8_t>(b[at]);
}
uint32_t Little32(std::string_view b, size_t at) {
  return (Little16(b, at + 2) << 16) | Little16(b, at);
}

bool StartsWith(std::string_view bytes, std::string_view magic) {
  return bytes.substr(0, magic.size()) == magic;
}

PictureHeader Problem(PictureFormat format, const char* problem) {
  PictureHeader header;
  header.format = format;
  header.problem = problem;
  return header;
}

PictureHeader Sized(PictureFormat format, int64_t width, int64_t height) {
  if (width <= 0 || height <= 0) return Problem(format, "has no size in its header");
  PictureHeader header;
  header.format = format;
  header.width = width;
  header.height = height;
  return header;
}

// The IHDR chunk comes first: length, "IHDR", width and height as 32-bit big-endian.
PictureHeader ReadPng(std::string_view b) {
  if (b.size() < 24 || b.substr(12, 4) != "IHDR") return Problem(PictureFormat::kPng, "truncated");
  return Sized(PictureFormat::kPng, Big32(b, 16), Big32(b, 20));
}

// The size is in the first start-of-frame segment; segments before it are skipped by length.
PictureHeader ReadJpeg(std::string_view b) {
  size_t at = 2;
  while (at + 4 <= b.size()) {
    if (static_cast<uint8_t>(b[at]) != 0xFF) return Problem(PictureFormat::kJpeg, "corrupt");
    const uint8_t marker = static_cast<uint8_t>(b[at + 1]);
    if (marker == 0xFF) {  // fill byte
      ++at;
      continue;
    }
    if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {  // no length of their own
      at += 2;
      continue;
    }
    if (marker == 0xDA || marker == 0xD9) break;  // image data or the end before any frame
    const size_t length = Big16(b, at + 2);
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 &&
                       marker != 0xCC;
    if (frame) {
      if (length < 7 || at + 9 > b.size()) break;
      return Sized(PictureFormat::kJpeg, Big16(b, at + 7), Big16(b, at + 5));
    }
    if (length < 2) return Problem(PictureFormat::kJpeg, "corrupt");
    at += 2 + length;
  }
  return Problem(PictureFormat::kJpeg, "truncated");
}

// BITMAPFILEHEADER, then a core header (12 bytes, 16-bit sizes) or an info header (40 bytes or
// more, signed 32-bit sizes; a negative height means top-down rows).
PictureHeader ReadBmp(std::string_view b) {
  if (b.size() < 26) return Problem(PictureFormat::kBmp, "truncated");
  const uint32_t headerSize = Little32(b, 14);
  const uint32_t pixelsAt = Little32(b, 10);
  int64_t width = 0, height = 0;
  uint32_t bits = 0, compression = 0;
  if (headerSize == 12) {
    width = Little16(b, 18);
    height = Little16(b, 20);
    bits = Little16(b, 24);
  } else if (headerSize >= 40) {
    if (b.size() < 34) return Problem(PictureFormat::kBmp, "truncated");
    width = static_cast<int32_t>(Little32(b, 18));
    height = static_cast<int32_t>(Little32(b, 22));
    if (height < 0) height = -height;
    bits = Little16(b, 28);
    compression = Little32(b, 30);
  } else {
    return Problem(PictureFormat::kBmp, "corrupt");
  }
  PictureHeader header = Sized(PictureFormat::kBmp, width, height);
  // Sizes this large are refused by the caller; the check below would overflow on them.
  if (!header.problem.empty() || width > 65536 || height > 65536) return header;
  // Uncompressed rows (BI_RGB, BI_BITFIELDS, BI_ALPHABITFIELDS) are padded to four bytes.
  if (compression == 0 || compression == 3 || compression == 6) {
    const int64_t rowBytes = (width * bits + 31) / 32 * 4;
    if (bits == 0 || static_cast<int64_t>(pixelsAt) + rowBytes * height >
                          static_cast<int64_t>(b.size())) {
      return Problem(PictureFormat::kBmp, "truncated");
    }
  }
  return header;
}

}  // namespace

PictureHeader ReadPictureHeader(std::string_view bytes) {
  if (StartsWith(bytes, "\x89PNG\r\n\x1a\n")) return ReadPng(bytes);
  if (StartsWith(bytes, "\xff\xd8\xff")) return ReadJpeg(bytes);
  if (StartsWith(bytes, "BM")) return ReadBmp(bytes);
  if (bytes.empty()) return Problem(PictureFormat::kUnknown, "empty");
  return Problem(PictureFormat::kUnknown, "not a PNG, JPEG or BMP picture");
}

const char* LoaderName(PictureFormat format) {
  switch (format) {
    case PictureFormat::kPng:
      return "png";
    case PictureFormat::kJpeg:
      return "jpeg";
    case PictureFormat::kBmp:
      return "bmp";
    case PictureFormat::kUnknown:
      break;
  }
  return nullptr;
}

}  // namespace tolvex::render
