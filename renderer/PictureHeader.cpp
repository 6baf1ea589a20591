// Telling a picture's format and claimed size from its header.
#include "renderer/PictureHeader.h"

#include <string>

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

PictureHeader Sized(PictureFormat format, int64_t width, int64_t height);

// `header` with the problem of data that could not hold the pixels it claims.
PictureHeader TooLittle(PictureHeader header) {
  header.dataProblem = "holds far too little data for the " + std::to_string(header.width) +
                       " x " + std::to_string(header.height) + " pixels its header claims";
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

// Deflate, which PNG compresses with, gives at most this many bytes for one it reads.
constexpr int64_t kDeflateRatio = 1032;

// The IHDR chunk comes first: length, "IHDR", width and height as 32-bit big-endian. The
// pixel rows are in the IDAT chunks; at one bit per pixel, the least any PNG stores, and at
// deflate's best ratio they must hold at least a filter byte and the pixels of each row.
PictureHeader ReadPng(std::string_view b) {
  if (b.size() < 24 || b.substr(12, 4) != "IHDR") return Problem(PictureFormat::kPng, "truncated");
  PictureHeader header = Sized(PictureFormat::kPng, Big32(b, 16), Big32(b, 20));
  if (!header.problem.empty()) return header;
  int64_t data = 0;
  for (size_t at = 8; at + 8 <= b.size();) {
    const uint32_t length = Big32(b, at);
    const std::string_view type = b.substr(at + 4, 4);
    if (type == "IDAT") data += length;
    if (type == "IEND") break;
    at += 12 + static_cast<size_t>(length);
  }
  const int64_t least = header.height * (1 + (header.width + 7) / 8);
  if (data * kDeflateRatio < least) return TooLittle(header);
  return header;
}

// The size is in the first start-of-frame segment; segments are skipped by their length, and
// the entropy-coded data after each start of scan up to the next marker. A JPEG ends with its
// end-of-image marker: a file without one is truncated. Huffman-coded DCT data spends at least
// one bit on each 8x8 block of its largest component, which the size claimed gives.
PictureHeader ReadJpeg(std::string_view b) {
  size_t at = 2;
  PictureHeader header;
  bool huffman = false;  // baseline, extended or progressive DCT with Huffman codes
  int64_t data = 0;      // bytes of entropy-coded data
  // Once the size is known, what is wrong after it is a problem of the data.
  auto broken = [&](const char* before, const char* after) {
    if (header.width == 0) return Problem(PictureFormat::kJpeg, before);
    PictureHeader sized = header;
    sized.dataProblem = after;
    return sized;
  };
  const char* const kCut = "is truncated: it ends before its end-of-image marker";
  const char* const kCorrupt = "is corrupt after its header";
  for (;;) {
    if (at + 2 > b.size()) return broken("truncated", kCut);
    if (static_cast<uint8_t>(b[at]) != 0xFF) return broken("corrupt", kCorrupt);
    const uint8_t marker = static_cast<uint8_t>(b[at + 1]);
    if (marker == 0xFF) {  // fill byte
      ++at;
      continue;
    }
    if (marker == 0xD9) break;                                   // end of image
    if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {  // no length of their own
      at += 2;
      continue;
    }
    if (at + 4 > b.size()) return broken("truncated", kCut);
    const size_t length = Big16(b, at + 2);
    if (length < 2) return broken("corrupt", kCorrupt);
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 &&
                       marker != 0xCC;
    if (frame && header.width == 0) {
      if (length < 7 || at + 9 > b.size()) return Problem(PictureFormat::kJpeg, "truncated");
      header = Sized(PictureFormat::kJpeg, Big16(b, at + 7), Big16(b, at + 5));
      if (!header.problem.empty()) return header;
      huffman = marker <= 0xC2;
    }
    if (marker == 0xDA && header.width == 0) return Problem(PictureFormat::kJpeg, "truncated");
    at += 2 + length;
    if (marker != 0xDA) continue;
    // Entropy-coded data: a 0xFF in it is followed by 0x00 (a stuffed byte) or a restart
    // marker; any other marker ends it.
    while (at < b.size()) {
      if (static_cast<uint8_t>(b[at]) == 0xFF && at + 1 < b.size()) {
        const uint8_t next = static_cast<uint8_t>(b[at + 1]);
        if (next != 0x00 && (next < 0xD0 || next > 0xD7)) break;
        at += 2;
        ++data;
        continue;
      }
      ++at;
      ++data;
    }
  }
  if (header.width == 0) return Problem(PictureFormat::kJpeg, "truncated");
  const int64_t blocks = ((header.width + 7) / 8) * ((header.height + 7) / 8);
  if (huffman && data * 8 < blocks) return TooLittle(header);
  return header;
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
