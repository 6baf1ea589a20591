// The renderer tests' pictures, written and decoded by the renderer's own back end: its PNG
// encoder, its BMP encoder and its decoder, the same on every system.
#include "renderer/BmpWriter.h"
#include "renderer/Picture.h"
#include "renderer/RenderTestSupport.h"

namespace tolvex::test {

Picture Picture::Load(const std::string& path) {
  render::PictureFile file;
  render::RgbPicture rgb;
  std::string why;
  if (render::ReadPictureFile(path, &file) != render::Status::kOk ||
      render::DecodeRgb(file, &rgb, &why) != render::Status::kOk) {
    return Picture{};
  }
  Picture picture{rgb.width, rgb.height, {}};
  for (size_t i = 0; i < rgb.rgb.size(); i += 3) {
    picture.pixels.push_back(Rgb{rgb.rgb[i], rgb.rgb[i + 1], rgb.rgb[i + 2]});
  }
  return picture;
}

void WritePicture(const std::string& path, int width, int height,
                  const std::function<Rgb(int x, int y)>& colour) {
  render::RgbPicture rgb{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Rgb c = colour(x, y);
      rgb.rgb.insert(rgb.rgb.end(), c.begin(), c.end());
    }
  }
  std::string bytes, why;
  if (path.substr(path.size() - 4) == ".bmp") {
    const render::PixelRows rows{width, height, rgb.rgb.data(), width * 3,
                                 render::PixelLayout::kRgb};
    bytes = render::EncodeBmp24(rows);
  } else {
    EXPECT_EQ(render::EncodePng(rgb, &bytes, &why), render::Status::kOk) << path << ": " << why;
  }
  WriteFile(path, bytes);
}

}  // namespace tolvex::test
