// Decoding and encoding pictures with GDI+, resampling them with ResamplePixels: the file is
// read and its header checked first (ReadPictureFile), so that GDI+ only ever sees a PNG, JPEG
// or BMP of an acceptable size; the bytes reach it through a memory stream. Plain RGB rows and
// PNG files for the menutemplate tool come from the same decoder and encoders.
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

// `picture` encoded by the GDI+ encoder `encoder`; false when it cannot be.
bool Encode(Gdiplus::Bitmap* picture, const CLSID& encoder, std::string* bytes) {
  StreamPtr stream(SHCreateMemStream(nullptr, 0));
  if (!stream) return false;
  const Gdiplus::Status saved = picture->Save(stream.get(), &encoder, nullptr);
  STATSTG about{};
  if (saved != Gdiplus::Ok || FAILED(stream->Stat(&about, STATFLAG_NONAME))) return false;
  bytes->assign(static_cast<size_t>(about.cbSize.QuadPart), '\0');
  LARGE_INTEGER start{};
  ULONG got = 0;
  return SUCCEEDED(stream->Seek(start, STREAM_SEEK_SET, nullptr)) &&
         SUCCEEDED(stream->Read(bytes->data(), static_cast<ULONG>(bytes->size()), &got)) &&
         got == bytes->size();
}

// A picture as GDI+ decodes it from a file's bytes, with the stream it reads them from for as
// long as it lives (the members go in reverse order: the bitmap first).
struct Decoded {
  StreamPtr stream;
  BitmapPtr bitmap;
};

// Opens `file` with GDI+'s decoder of its format. What keeps it from decoding goes to `why`,
// as a phrase about the picture.
Status Open(const PictureFile& file, Decoded* out, std::string* why) {
  if (const Gdiplus::Status started = StartGdiplus(); started != Gdiplus::Ok) {
    *why = "cannot be decoded: cannot start " + GdiplusStatusText(started);
    return Status::kDrawingFailed;
  }
  out->stream.reset(SHCreateMemStream(reinterpret_cast<const BYTE*>(file.bytes.data()),
                                      static_cast<UINT>(file.bytes.size())));
  if (!out->stream) {
    *why = "cannot be decoded: out of memory";
    return Status::kDrawingFailed;
  }
  out->bitmap.reset(Gdiplus::Bitmap::FromStream(out->stream.get()));
  if (!out->bitmap || out->bitmap->GetLastStatus() != Gdiplus::Ok) {
    const Gdiplus::Status status =
        out->bitmap ? out->bitmap->GetLastStatus() : Gdiplus::OutOfMemory;
    *why = "is truncated or corrupt: not a picture GDI+ can decode (" +
           GdiplusStatusText(status) + ")";
    return Status::kPictureUnreadable;
  }
  // The header was checked before; this guards against a decoder that finds another size.
  if (!SizeAcceptable(out->bitmap->GetWidth(), out->bitmap->GetHeight())) {
    *why = "is too large";
    return Status::kPictureTooLarge;
  }
  return Status::kOk;
}

// Copies every row of `decoded` in `format` into `rows`, `stride` bytes apart. Locking the
// pixels makes GDI+ decode every row, so a cut picture fails here.
Status ReadRows(Gdiplus::Bitmap* decoded, Gdiplus::PixelFormat format, void* rows, INT stride,
                std::string* why) {
  Gdiplus::BitmapData data{};
  data.Width = decoded->GetWidth();
  data.Height = decoded->GetHeight();
  data.Stride = stride;
  data.PixelFormat = format;
  data.Scan0 = rows;
  Gdiplus::Rect all(0, 0, static_cast<INT>(data.Width), static_cast<INT>(data.Height));
  const Gdiplus::Status locked = decoded->LockBits(
      &all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf, format, &data);
  if (locked != Gdiplus::Ok) {
    *why = "is truncated or corrupt: cannot be decoded (" + GdiplusStatusText(locked) + ")";
    return Status::kPictureUnreadable;
  }
  decoded->UnlockBits(&data);
  return Status::kOk;
}

}  // namespace

Status LoadPicture(const std::string& path, BitmapPtr* out) {
  PictureFile file;
  if (const Status s = ReadPictureFile(path, &file); s != Status::kOk) return s;
  Decoded decoded;
  Pixels32 pixels;
  std::string why;
  Status s = Open(file, &decoded, &why);
  if (s == Status::kOk) {
    pixels.width = static_cast<int>(decoded.bitmap->GetWidth());
    pixels.height = static_cast<int>(decoded.bitmap->GetHeight());
    pixels.words.assign(static_cast<size_t>(pixels.width) * pixels.height, 0);
    s = ReadRows(decoded.bitmap.get(), PixelFormat32bppPARGB, pixels.words.data(),
                 pixels.width * 4, &why);
  }
  if (s != Status::kOk) return Fail(s, "picture " + path + " " + why);
  // A bitmap of our own, which the decoder's stream need not outlive.
  BitmapPtr own;
  if (const Status made = NewBitmap(pixels.width, pixels.height, &own); made != Status::kOk) {
    return made;
  }
  if (const Status copied = Transfer(own.get(), &pixels, true); copied != Status::kOk) {
    return copied;
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

Status DecodeRgb(const PictureFile& file, RgbPicture* out, std::string* why) {
  Decoded decoded;
  if (const Status s = Open(file, &decoded, why); s != Status::kOk) return s;
  const int width = static_cast<int>(decoded.bitmap->GetWidth());
  const int height = static_cast<int>(decoded.bitmap->GetHeight());
  // Rows of a 24-bit GDI+ bitmap are blue, green, red, each padded to 4 bytes.
  const INT stride = (width * 3 + 3) & ~3;
  std::vector<uint8_t> rows(static_cast<size_t>(stride) * height);
  const Status s = ReadRows(decoded.bitmap.get(), PixelFormat24bppRGB, rows.data(), stride, why);
  if (s != Status::kOk || out == nullptr) return s;
  CopyRgbRows(width, height, rows.data(), stride, 3, true, out);
  return Status::kOk;
}

Status EncodePng(const RgbPicture& picture, std::string* png, std::string* why) {
  CLSID encoder{};
  if (StartGdiplus() != Gdiplus::Ok || !EncoderFor("png", &encoder)) {
    *why = "GDI+ has no PNG encoder";
    return Status::kDrawingFailed;
  }
  const INT stride = (picture.width * 3 + 3) & ~3;
  std::vector<BYTE> rows(static_cast<size_t>(stride) * picture.height);
  for (int y = 0; y < picture.height; ++y) {
    BYTE* to = &rows[static_cast<size_t>(y) * stride];
    for (int x = 0; x < picture.width; ++x, to += 3) {
      const uint8_t* p = picture.At(x, y);
      to[0] = p[2];
      to[1] = p[1];
      to[2] = p[0];
    }
  }
  Gdiplus::Bitmap bitmap(picture.width, picture.height, stride, PixelFormat24bppRGB, rows.data());
  if (bitmap.GetLastStatus() != Gdiplus::Ok) {
    *why = "cannot make the picture (" + GdiplusStatusText(bitmap.GetLastStatus()) + ")";
    return Status::kDrawingFailed;
  }
  if (!Encode(&bitmap, encoder, png)) {
    *why = "cannot encode the PNG";
    return Status::kDrawingFailed;
  }
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
    if (!Encode(picture.get(), encoder, bytes)) {
      return Fail(Status::kOutputUnwritable, "cannot encode " + target);
    }
    return Status::kOk;
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
