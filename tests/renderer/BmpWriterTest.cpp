#include "renderer/BmpWriter.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tolvex::render {
namespace {

TEST(BmpWriter, RowsPaddedToFourBytesAndStoredBottomUp) {
  // 3 x 2 pixels, rows of 9 bytes padded to 12, the last row first; then RGBA flattened on black
  // (the cairo layout is proven by the exact colours of every menu probe).
  const uint8_t rgb[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 10, 11, 12, 13, 14, 15, 16, 17, 18, 0};
  const std::string bmp = EncodeBmp24(PixelRows{3, 2, rgb, 10, PixelLayout::kRgb});
  const uint8_t header[] = {'B', 'M', 78, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0,
                            3,   0,   0,  0, 2, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0,  0, 24, 0};
  const uint8_t pixels[] = {12, 11, 10, 15, 14, 13, 18, 17, 16, 0, 0, 0,
                            3,  2,  1,  6,  5,  4,  9,  8,  7,  0, 0, 0};
  ASSERT_EQ(bmp.size(), 78u);
  EXPECT_EQ(std::memcmp(bmp.data(), header, sizeof header), 0);
  EXPECT_EQ(std::memcmp(bmp.data() + 54, pixels, sizeof pixels), 0);

  const uint8_t rgba[] = {200, 100, 50, 128};
  EXPECT_EQ(EncodeBmp24(PixelRows{1, 1, rgba, 4, PixelLayout::kRgba}).substr(54, 3), "\x19\x32\x64");
  EXPECT_TRUE(EncodeBmp24(PixelRows{0, 1, rgb, 3, PixelLayout::kRgb}).empty());
}

}  // namespace
}  // namespace tolvex::render
