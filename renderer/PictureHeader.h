// What a picture file is before any decoder sees it: its format, told by its first bytes, and
// the size its header claims. Only the formats a DVD menu needs are known (PNG, JPEG, BMP);
// everything else, SVG included, is refused here. Pure memory work; reentrant.
#ifndef TOLVEX_RENDERER_PICTUREHEADER_H
#define TOLVEX_RENDERER_PICTUREHEADER_H

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvex::render {

enum class PictureFormat { kUnknown, kPng, kJpeg, kBmp };

struct PictureHeader {
  PictureFormat format = PictureFormat::kUnknown;
  int64_t width = 0;
  int64_t height = 0;
  // Empty when the header is sound; else what is wrong, as a phrase for a reason:
  // "not a PNG, JPEG or BMP picture", "truncated", ...
  std::string problem;
  // Empty when the data after a sound header can hold the pixels it claims, as far as can be
  // told without decoding; else a phrase for a reason: "is truncated (...)", "holds far too
  // little data for ...". Looked at after the claimed size, which is refused first.
  std::string dataProblem;
};

// Reads the header of the picture file `bytes`. For uncompressed BMP files, also checks that
// the file holds all the pixel rows its header promises: a few bytes must not stand for a
// picture of millions of pixels. For PNG and JPEG files, checks that the compressed data could
// hold the pixels claimed, and that a JPEG reaches its end-of-image marker.
PictureHeader ReadPictureHeader(std::string_view bytes);

// The gdk-pixbuf loader name of `format` ("png", "jpeg", "bmp").
const char* LoaderName(PictureFormat format);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_PICTUREHEADER_H
