// Pictures as plain RGB rows and as PNG files, as the back end hands them to the menutemplate
// tool for its previews.
#include <gtest/gtest.h>

#include "renderer/Picture.h"
#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

Rgb Colour(int x, int y) {
  return Rgb{static_cast<uint8_t>(x * 40), static_cast<uint8_t>(y * 50 + 20),
             static_cast<uint8_t>(200 - x * y)};
}

render::RgbPicture Decode(const std::string& path) {
  render::PictureFile file;
  EXPECT_EQ(render::ReadPictureFile(path, &file), render::Status::kOk) << path;
  render::RgbPicture picture;
  std::string why;
  EXPECT_EQ(render::DecodeRgb(file, &picture, &why), render::Status::kOk) << why;
  return picture;
}

void ExpectColours(const render::RgbPicture& picture) {
  ASSERT_EQ(picture.width, 5);
  ASSERT_EQ(picture.height, 3);
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 5; ++x) {
      const uint8_t* p = picture.At(x, y);
      EXPECT_EQ((Rgb{p[0], p[1], p[2]}), Colour(x, y)) << x << ", " << y;
    }
  }
}

TEST(PictureRows, ADecodedPictureAndThePngMadeOfItHoldEveryPixelsColour) {
  TempDir dir;
  WritePicture(dir.File("in.png"), 5, 3, Colour);
  const render::RgbPicture decoded = Decode(dir.File("in.png"));
  ExpectColours(decoded);
  std::string png;
  std::string why;
  ASSERT_EQ(render::EncodePng(decoded, &png, &why), render::Status::kOk) << why;
  WriteFile(dir.File("out.png"), png);
  ExpectColours(Decode(dir.File("out.png")));
}

}  // namespace
}  // namespace tolvex::test
