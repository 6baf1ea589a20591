// Decoding and encoding pictures with GDI+, resampling them with ResamplePixels: the file is
// read and its header checked first (ReadPictureFile), so that GDI+ only ever sees a PNG, JPEG
// or BMP of an acceptable size; the bytes reach it through a memory stream.
#include "renderer/gdiplus/GdiplusPicture.h"

#include <shlwapi.h>

#include <vector>

#include "renderer/BmpWriter.h"
#include "renderer/Failure.h"
#include "renderer/Paths.h"
#include "renderer/Resample.h"

namespace tolvex::render {
namespace {

struct StreamRelease {
  void operator()(IStream* stream) const { stream->Release(); }
};
using StreamPtr = std::unique_ptr<IStream, StreamRelease>;

// A bitmap of `width` x `height` in the premultiplied 32-bit format everything is drawn in.
Status NewBitmap(int width, int height, BitmapPtr* out) {
  BitmapPtr bitmap(new Gdiplus::Bitmap(width, height, PixelFormat32bppPARGB));
  if (bitmap->GetLastStatus() != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed, "out of memory for a picture of " +
                                            std::to_string(width) + " x " +
                                            std::to_string(height));
  }
  *out = std::move(bitmap);
  return Status::kOk;
}

// Copies pixels between a bitmap and premultiplied words, one way or the other.
Status Transfer(Gdiplus::Bitmap* bitmap, Pixels32* pixels, bool write) {
  Gdiplus::BitmapData data{};
  data.Width = static_cast<UINT>(pixels->width);
  data.Height = static_cast<UINT>(pixels->height);
  data.Stride = pixels->width * 4;
  data.PixelFormat = PixelFormat32bppPARGB;
  data.Scan0 = pixels->words.data();
  Gdiplus::Rect all(0, 0, pixels->width, pixels->height);
  const UINT mode = (write ? Gdiplus::ImageLockModeWrite : Gdiplus::ImageLockModeRead) |
                    Gdiplus::ImageLockModeUserInputBuf;
  const Gdiplus::Status locked = bitmap->LockBits(&all, mode, PixelFormat32bppPARGB, &data);
  if (locked == Gdiplus::Ok) bitmap->UnlockBits(&data);
  if (locked != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed,
                "cannot reach a picture's pixels: " + GdiplusStatusText(locked));
  }
  return Status::kOk;
}

// The pixels of `bitmap` as premultiplied 0xAARRGGBB words (BmpWriter's kCairo layout).
Status WordsOf(Gdiplus::Bitmap* bitmap, Pixels32* pixels) {
  pixels->width = static_cast<int>(bitmap->GetWidth());
  pixels->height = static_cast<int>(bitmap->GetHeight());
  pixels->words.assign(static_cast<size_t>(pixels->width) * pixels->height, 0);
  return Transfer(bitmap, pixels, false);
}

// The GDI+ encoder whose file name extensions include `extension` ("png"), or false.
bool EncoderFor(const std::string& extension, CLSID* encoder) {
  UINT count = 0;
  UINT bytes = 0;
  if (Gdiplus::GetImageEncodersSize(&count, &bytes) != Gdiplus::Ok || bytes == 0) return false;
  std::vector<uint8_t> buffer(bytes);
  auto* codecs = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
  if (Gdiplus::GetImageEncoders(count, bytes, codecs) != Gdiplus::Ok) return false;
  std::wstring wanted = L"*.";
  for (const char c : extension) wanted += static_cast<wchar_t>(c >= 'a' && c <= 'z' ? c - 32 : c);
  for (UINT i = 0; i < count; ++i) {
    // A list such as "*.JPG;*.JPEG;*.JPE;*.JFIF".
    std::wstring list = codecs[i].FilenameExtension ? codecs[i].FilenameExtension : L"";
    for (wchar_t& c : list) c = c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c;
    size_t at = 0;
    while (at <= list.size()) {
      const size_t end = std::min(list.find(L';', at), list.size());
      if (list.compare(at, end - at, wanted) == 0) {
        *encoder = codecs[i].Clsid;
        return true;
      }
      at = end + 1;
    }
  }
  return false;
}

// `picture` encoded by the GDI+ encoder `encoder`.
Status Encode(Gdiplus::Bitmap* picture, const CLSID& encoder, const std::string& target,
              std::string* bytes) {
  StreamPtr stream(SHCreateMemStream(nullptr, 0));
  if (!stream) return Fail(Status::kDrawingFailed, "out of memory while encoding " + target);
  const Gdiplus::Status saved = picture->Save(stream.get(), &encoder, nullptr);
  STATSTG about{};
  if (saved != Gdiplus::Ok || FAILED(stream->Stat(&about, STATFLAG_NONAME))) {
    return Fail(Status::kOutputUnwritable, "cannot encode " + target);
  }
  bytes->assign(static_cast<size_t>(about.cbSize.QuadPart), '\0');
  LARGE_INTEGER start{};
  ULONG got = 0;
  if (FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr)) ||
      FAILED(stream->Read(bytes->data(), static_cast<ULONG>(bytes->size()), &got)) ||
      got != bytes->size()) {
    return Fail(Status::kOutputUnwritable, "cannot encode " + target);
  }
  return Status::kOk;
}

}  // namespace

Status LoadPicture(const std::string& path, BitmapPtr* out) {
  if (const Gdiplus::Status started = StartGdiplus(); started != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed, "cannot start " + GdiplusStatusText(started));
  }
  PictureFile file;
  if (const Status s = ReadPictureFile(path, &file); s != Status::kOk) return s;
  StreamPtr stream(SHCreateMemStream(reinterpret_cast<const BYTE*>(file.bytes.data()),
                                     static_cast<UINT>(file.bytes.size())));
  if (!stream) return Fail(Status::kDrawingFailed, "out of memory while decoding " + path);
  // The decoder reads from the stream as long as the bitmap lives: the pixels are copied into
  // a bitmap of our own before the stream goes.
  BitmapPtr decoded(Gdiplus::Bitmap::FromStream(stream.get()));
  if (!decoded || decoded->GetLastStatus() != Gdiplus::Ok) {
    const Gdiplus::Status why = decoded ? decoded->GetLastStatus() : Gdiplus::OutOfMemory;
    return Fail(Status::kPictureUnreadable,
                "cannot decode picture " + path + ": corrupt (" + GdiplusStatusText(why) + ")");
  }
  const int width = static_cast<int>(decoded->GetWidth());
  const int height = static_cast<int>(decoded->GetHeight());
  // The header was checked before; this guards against a decoder that finds another size.
  if (!SizeAcceptable(width, height)) {
    return Fail(Status::kPictureTooLarge, "picture " + path + " is too large");
  }
  BitmapPtr own;
  if (const Status s = NewBitmap(width, height, &own); s != Status::kOk) return s;
  Gdiplus::Graphics graphics(own.get());
  graphics.SetCompositingMode(Gdiplus::CompositingModeSourceCopy);
  const Gdiplus::Status drawn = graphics.DrawImage(decoded.get(), 0, 0, width, height);
  if (drawn != Gdiplus::Ok) {
    return Fail(Status::kPictureUnreadable,
                "cannot decode picture " + path + ": corrupt (" + GdiplusStatusText(drawn) + ")");
  }
  *out = std::move(own);
  return Status::kOk;
}

Status LoadPictureAt(const std::string& path, int width, int height, BitmapPtr* out) {
  if (!SizeAcceptable(width, height)) {
    return Fail(Status::kBadArgument, "cannot draw picture " + path + " at " +
                                          std::to_string(width) + " x " + std::to_string(height));
  }
  BitmapPtr picture;
  if (const Status s = LoadPicture(path, &picture); s != Status::kOk) return s;
  if (static_cast<int>(picture->GetWidth()) == width &&
      static_cast<int>(picture->GetHeight()) == height) {
    *out = std::move(picture);
    return Status::kOk;
  }
  // GDI+'s own scaling does not average when it reduces everywhere (Wine's samples), so the
  // resampling is ours.
  Pixels32 pixels;
  if (const Status s = WordsOf(picture.get(), &pixels); s != Status::kOk) return s;
  Pixels32 resampled = ResamplePixels(pixels, width, height);
  BitmapPtr stretched;
  if (const Status s = NewBitmap(width, height, &stretched); s != Status::kOk) return s;
  if (const Status s = Transfer(stretched.get(), &resampled, true); s != Status::kOk) return s;
  *out = std::move(stretched);
  return Status::kOk;
}

Status CheckPictureDecodes(const std::string& path) {
  BitmapPtr unused;
  return LoadPicture(path, &unused);
}

Status EncodeResized(const std::string& source, int width, int height, const std::string& target,
                     std::string* bytes) {
  BitmapPtr picture;
  if (const Status s = LoadPictureAt(source, width, height, &picture); s != Status::kOk) return s;
  const std::string extension = ExtensionOf(target);
  CLSID encoder{};
  if (!extension.empty() && extension != "bmp" && EncoderFor(extension, &encoder)) {
    return Encode(picture.get(), encoder, target, bytes);
  }
  Pixels32 pixels;
  if (const Status s = WordsOf(picture.get(), &pixels); s != Status::kOk) return s;
  *bytes = EncodeBmp24(PixelRows{pixels.width, pixels.height,
                                 reinterpret_cast<const uint8_t*>(pixels.words.data()),
                                 static_cast<ptrdiff_t>(pixels.width) * 4, PixelLayout::kCairo});
  if (bytes->empty()) return Fail(Status::kDrawingFailed, "cannot encode " + target);
  return Status::kOk;
}

}  // namespace tolvex::render
