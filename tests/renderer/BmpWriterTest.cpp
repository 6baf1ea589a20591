#include "renderer/BmpWriter.h"

#include <gtest/gtest.h>

#include <cstring>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

using render::EncodeBmp24;
using render::PixelLayout;
using render::PixelRows;

uint32_t Le32(const std::string& b, size_t at) {
  uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<uint8_t>(b[at + i]);
  return v;
}

TEST(BmpWriter, HeaderPaddingAndBottomUpRows) {
  // 3 x 2: rows of 9 bytes padded to 12; the last row comes first in the file.
  const uint8_t rgb[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0,  // row 0, stride 11
                         10, 11, 12, 13, 14, 15, 16, 17, 18, 0, 0};
  const std::string bmp = EncodeBmp24(PixelRows{3, 2, rgb, 11, PixelLayout::kRgb});
  ASSERT_EQ(bmp.size(), 54u + 24);
  EXPECT_EQ(bmp.substr(0, 2), "BM");
  EXPECT_EQ(Le32(bmp, 2), bmp.size());
  EXPECT_EQ(Le32(bmp, 10), 54u);
  EXPECT_EQ(Le32(bmp, 14), 40u);
  EXPECT_EQ(Le32(bmp, 18), 3u);
  EXPECT_EQ(Le32(bmp, 22), 2u);
  EXPECT_EQ(Le32(bmp, 28) & 0xffff, 24u);
  EXPECT_EQ(Le32(bmp, 30), 0u);
  EXPECT_EQ(Le32(bmp, 34), 24u);
  const uint8_t expected[] = {12, 11, 10, 15, 14, 13, 18, 17, 16, 0, 0, 0,
                              3,  2,  1,  6,  5,  4,  9,  8,  7,  0, 0, 0};
  EXPECT_EQ(std::memcmp(bmp.data() + 54, expected, sizeof expected), 0);
}

TEST(BmpWriter, DecodesBackFromEveryLayout) {
  TempDir dir;
  const uint32_t cairo[] = {0xff102030, 0x80402010};  // premultiplied: half-transparent
  const uint8_t rgba[] = {16, 32, 48, 255, 128, 64, 32, 128};
  WriteFile(dir.File("c.bmp"), EncodeBmp24(PixelRows{2, 1, reinterpret_cast<const uint8_t*>(cairo),
                                                     8, PixelLayout::kCairo}));
  WriteFile(dir.File("a.bmp"), EncodeBmp24(PixelRows{2, 1, rgba, 8, PixelLayout::kRgba}));
  const Picture c = Picture::Load(dir.File("c.bmp"));
  const Picture a = Picture::Load(dir.File("a.bmp"));
  ASSERT_TRUE(c.Valid());
  ASSERT_TRUE(a.Valid());
  EXPECT_EQ(c.At(0, 0), (Rgb{0x10, 0x20, 0x30}));
  EXPECT_EQ(c.At(1, 0), (Rgb{0x40, 0x20, 0x10}));
  EXPECT_EQ(a.At(0, 0), (Rgb{16, 32, 48}));
  EXPECT_EQ(a.At(1, 0), (Rgb{64, 32, 16}));  // flattened onto black
}

TEST(BmpWriter, NothingForAnEmptyPicture) {
  const uint8_t px[3] = {};
  EXPECT_TRUE(EncodeBmp24(PixelRows{0, 1, px, 3, PixelLayout::kRgb}).empty());
  EXPECT_TRUE(EncodeBmp24(PixelRows{1, 1, nullptr, 3, PixelLayout::kRgb}).empty());
}

}  // namespace
}  // namespace tolvex::test
