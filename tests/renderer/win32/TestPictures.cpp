// The renderer tests' pictures on Windows: written and decoded by GDI+, through the renderer's
// own GDI+ session.
#include <memory>

#include "renderer/RenderTestSupport.h"
#include "renderer/gdiplus/Gdiplus.h"
#include "support/win32/CommandLine.h"

namespace tolvex::test {

const bool kArrowsAntiAliased = false;
namespace {

void StartGdiplus() { ASSERT_EQ(render::StartGdiplus(), Gdiplus::Ok); }

bool Encoder(const wchar_t* mime, CLSID* clsid) {
  UINT count = 0, bytes = 0;
  Gdiplus::GetImageEncodersSize(&count, &bytes);
  std::vector<uint8_t> buffer(bytes);
  auto* codecs = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
  Gdiplus::GetImageEncoders(count, bytes, codecs);
  for (UINT i = 0; i < count; ++i) {
    if (std::wstring(codecs[i].MimeType) == mime) return *clsid = codecs[i].Clsid, true;
  }
  return false;
}

}  // namespace

Picture Picture::Load(const std::string& path) {
  StartGdiplus();
  Picture picture;
  Gdiplus::Bitmap bitmap(Wide(path).c_str());
  if (bitmap.GetLastStatus() != Gdiplus::Ok) return picture;
  picture.width = static_cast<int>(bitmap.GetWidth());
  picture.height = static_cast<int>(bitmap.GetHeight());
  Gdiplus::BitmapData data{};
  Gdiplus::Rect all(0, 0, picture.width, picture.height);
  if (bitmap.LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat24bppRGB, &data) !=
      Gdiplus::Ok) {
    return Picture{};
  }
  for (int y = 0; y < picture.height; ++y) {
    const auto* row = static_cast<const uint8_t*>(data.Scan0) + y * data.Stride;
    for (int x = 0; x < picture.width; ++x) {
      picture.pixels.push_back(Rgb{row[x * 3 + 2], row[x * 3 + 1], row[x * 3]});
    }
  }
  bitmap.UnlockBits(&data);
  return picture;
}

void WritePicture(const std::string& path, int width, int height,
                  const std::function<Rgb(int x, int y)>& colour) {
  StartGdiplus();
  Gdiplus::Bitmap bitmap(width, height, PixelFormat24bppRGB);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Rgb c = colour(x, y);
      bitmap.SetPixel(x, y, Gdiplus::Color(255, c[0], c[1], c[2]));
    }
  }
  const std::string extension = path.substr(path.find_last_of('.') + 1);
  const wchar_t* mime = extension == "jpg" ? L"image/jpeg"
                        : extension == "png" ? L"image/png"
                                             : L"image/bmp";
  CLSID encoder{};
  ASSERT_TRUE(Encoder(mime, &encoder)) << path;
  EXPECT_EQ(bitmap.Save(Wide(path).c_str(), &encoder, nullptr), Gdiplus::Ok) << path;
}

}  // namespace tolvex::test
