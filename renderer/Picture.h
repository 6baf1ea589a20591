// Pictures a render takes in: the file read whole within a size limit (InputFile), its format
// and claimed size checked from the header (PictureHeader: PNG, JPEG and BMP only) before any
// decoder sees it. Decoding and encoding are the drawing back end's (cairo/PixbufPicture,
// gdiplus/GdiplusPicture), which implements the calls below that need them, for the renderer
// and for the menutemplate tool alike. Reentrant.
#ifndef TOLVEX_RENDERER_PICTURE_H
#define TOLVEX_RENDERER_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "renderer/PictureHeader.h"
#include "renderer/Status.h"

namespace tolvex::render {

// Pictures whose header claims more pixels than this, or a side longer than kMaxPictureSide,
// are refused before decoding. A 6000 x 4000 camera photo fits; a PNG or BMP this large takes
// about 100 MB while it is decoded (a JPEG far less where gdk-pixbuf decodes it at the size
// drawn).
inline constexpr int64_t kMaxPicturePixels = 25LL * 1000 * 1000;
inline constexpr int64_t kMaxPictureSide = 16384;

// Whether a picture of `width` x `height` may be decoded or drawn.
bool SizeAcceptable(int64_t width, int64_t height);

// A picture file read and checked, ready for a decoder.
struct PictureFile {
  std::string bytes;
  PictureHeader header;
};

// Reads the picture at `path` and checks its header: kPictureUnreadable or kPictureTooLarge,
// with the reason, when it is no picture a decoder should see.
Status ReadPictureFile(const std::string& path, PictureFile* out);

// An opaque RGB picture, 3 bytes a pixel, row by row from the top.
struct RgbPicture {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> rgb;
  uint8_t* At(int x, int y) { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
  const uint8_t* At(int x, int y) const { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
};

// Implemented by the back end. Decodes `file` whole at its own size into `out` (any alpha
// dropped; null: only tried). kOk, or kPictureUnreadable or kPictureTooLarge with what keeps
// it from decoding as a phrase about the picture in `why`: "is truncated or corrupt", then the
// decoder's reason if it gave one. A picture whose decoder delivers fewer rows than the picture
// has is truncated even when the decoder reports no error.
Status DecodeRgb(const PictureFile& file, RgbPicture* out, std::string* why);

// For the back ends: decoded rows of `width` x `height` pixels, `stride` bytes apart, `step`
// bytes a pixel, as red, green, blue, or as blue, green, red when `bgr`, copied into `out`.
void CopyRgbRows(int width, int height, const uint8_t* rows, ptrdiff_t stride, int step, bool bgr,
                 RgbPicture* out);

// Implemented by the back end. `picture` as a PNG file; kDrawingFailed with the reason in `why`
// when it cannot be encoded.
Status EncodePng(const RgbPicture& picture, std::string* png, std::string* why);

// Implemented by the back end. Decodes the picture at `path` at its own size and forgets it:
// a named picture that is not drawn must still be one.
Status CheckPictureDecodes(const std::string& path);

// Implemented by the back end. The picture at `source` resampled to `width` x `height` (an
// acceptable size), encoded in the format of the extension of `target` (ExtensionOf): a 24-bit
// BMP for "bmp" or none, else the back end's writer of that format, or BMP when it has none.
Status EncodeResized(const std::string& source, int width, int height, const std::string& target,
                     std::string* bytes);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_PICTURE_H
