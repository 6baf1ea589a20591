// Picture files as pixels with GDI+ (see PixelFile.h): decoded from the file's bytes in
// memory, PNGs written through GDI+'s PNG encoder into a memory stream, in the renderer's GDI+
// session (renderer/gdiplus/Gdiplus.h), which the tool builds in with the renderer's text.
#include "tools/picture/PixelFile.h"

#include "platform/Os.h"
#include "renderer/InputFile.h"
#include "renderer/gdiplus/Gdiplus.h"

#include <shlwapi.h>

#include <memory>
#include <vector>

namespace menutool {
namespace {

namespace gdi = Gdiplus::DllExports;
using Gdiplus::GpBitmap;
using Gdiplus::GpImage;
using Gdiplus::GpStatus;

bool Started() { return tolvex::render::StartGdiplus() == Gdiplus::Ok; }

struct StreamRelease {
  void operator()(IStream* stream) const { stream->Release(); }
};
using Stream = std::unique_ptr<IStream, StreamRelease>;

struct BitmapDispose {
  void operator()(GpBitmap* bitmap) const { gdi::GdipDisposeImage(bitmap); }
};
using Bitmap = std::unique_ptr<GpBitmap, BitmapDispose>;

std::string Failed(const char* what, GpStatus status) {
  return std::string(what) + " (" + tolvex::render::GdiplusStatusText(status) + ")";
}

// Decodes `bytes` whole into `out` (when given); the reason when it cannot.
std::optional<std::string> Decode(const std::string& bytes, Pixels* out) {
  if (!Started()) return "GDI+ cannot be started";
  Stream stream(SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()),
                                  static_cast<UINT>(bytes.size())));
  if (!stream) return "out of memory";
  GpBitmap* made = nullptr;
  GpStatus status = gdi::GdipCreateBitmapFromStream(stream.get(), &made);
  if (status != Gdiplus::Ok) return Failed("not a picture GDI+ can decode", status);
  Bitmap bitmap(made);
  UINT width = 0, height = 0;
  gdi::GdipGetImageWidth(bitmap.get(), &width);
  gdi::GdipGetImageHeight(bitmap.get(), &height);
  // Locking the pixels makes GDI+ decode every row, so a cut picture fails here.
  Gdiplus::GpRect all(0, 0, static_cast<INT>(width), static_cast<INT>(height));
  Gdiplus::BitmapData data{};
  status = gdi::GdipBitmapLockBits(bitmap.get(), &all, Gdiplus::ImageLockModeRead,
                                   PixelFormat24bppRGB, &data);
  if (status != Gdiplus::Ok) return Failed("cannot be decoded", status);
  if (out) {
    out->width = static_cast<int>(width);
    out->height = static_cast<int>(height);
    out->rgb.resize(static_cast<size_t>(width) * height * 3);
    for (UINT y = 0; y < height; ++y) {
      const auto* row = static_cast<const uint8_t*>(data.Scan0) + static_cast<ptrdiff_t>(y) * data.Stride;
      for (UINT x = 0; x < width; ++x) {
        uint8_t* to = out->At(static_cast<int>(x), static_cast<int>(y));
        to[0] = row[x * 3 + 2];  // GDI+ keeps blue, green, red
        to[1] = row[x * 3 + 1];
        to[2] = row[x * 3];
      }
    }
  }
  gdi::GdipBitmapUnlockBits(bitmap.get(), &data);
  return std::nullopt;
}

// The class id of GDI+'s PNG encoder.
bool PngEncoder(CLSID* id) {
  UINT count = 0, size = 0;
  if (gdi::GdipGetImageEncodersSize(&count, &size) != Gdiplus::Ok || size == 0) return false;
  std::vector<uint8_t> buffer(size);
  auto* codecs = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
  if (gdi::GdipGetImageEncoders(count, size, codecs) != Gdiplus::Ok) return false;
  for (UINT i = 0; i < count; ++i)
    if (codecs[i].MimeType && lstrcmpiW(codecs[i].MimeType, L"image/png") == 0) {
      *id = codecs[i].Clsid;
      return true;
    }
  return false;
}

}  // namespace

bool ReadPixels(const std::string& path, Pixels* out, std::string* why) {
  std::string bytes;
  const auto read = tolvex::platform::os::ReadWholeFile(path, &bytes, nullptr,
                                                        tolvex::render::kMaxPictureBytes);
  if (!read.ok()) {
    *why = tolvex::platform::ErrnoText(tolvex::platform::ErrnoFromStatus(read));
    return false;
  }
  if (const auto problem = Decode(bytes, out)) {
    *why = *problem;
    return false;
  }
  return true;
}

bool EncodePng(const Pixels& pixels, std::string* png, std::string* why) {
  CLSID encoder;
  if (!Started() || !PngEncoder(&encoder)) {
    *why = "GDI+ has no PNG encoder";
    return false;
  }
  // Rows of a 24-bit GDI+ bitmap are blue, green, red, each row padded to 4 bytes.
  const INT stride = (pixels.width * 3 + 3) & ~3;
  std::vector<BYTE> rows(static_cast<size_t>(stride) * pixels.height);
  for (int y = 0; y < pixels.height; ++y)
    for (int x = 0; x < pixels.width; ++x) {
      const uint8_t* p = pixels.At(x, y);
      BYTE* to = &rows[static_cast<size_t>(y) * stride + static_cast<size_t>(x) * 3];
      to[0] = p[2];
      to[1] = p[1];
      to[2] = p[0];
    }
  GpBitmap* made = nullptr;
  GpStatus status = gdi::GdipCreateBitmapFromScan0(pixels.width, pixels.height, stride,
                                                   PixelFormat24bppRGB, rows.data(), &made);
  if (status != Gdiplus::Ok) {
    *why = Failed("cannot make the picture", status);
    return false;
  }
  Bitmap bitmap(made);
  IStream* opened = nullptr;
  if (CreateStreamOnHGlobal(nullptr, TRUE, &opened) != S_OK) {
    *why = "out of memory";
    return false;
  }
  Stream stream(opened);
  status = gdi::GdipSaveImageToStream(bitmap.get(), stream.get(), &encoder, nullptr);
  HGLOBAL memory = nullptr;
  if (status != Gdiplus::Ok || GetHGlobalFromStream(stream.get(), &memory) != S_OK) {
    *why = Failed("cannot encode the PNG", status);
    return false;
  }
  STATSTG stat{};
  stream->Stat(&stat, STATFLAG_NONAME);
  const void* bytes = GlobalLock(memory);
  png->assign(static_cast<const char*>(bytes), static_cast<size_t>(stat.cbSize.QuadPart));
  GlobalUnlock(memory);
  return true;
}

std::optional<std::string> DecodeProblem(const std::string& bytes,
                                         tolvex::render::PictureFormat) {
  if (const auto problem = Decode(bytes, nullptr)) return "is truncated or corrupt: " + *problem;
  return std::nullopt;
}

}  // namespace menutool
