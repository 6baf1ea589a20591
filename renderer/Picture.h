// Pictures a render takes in: the file read whole within a size limit (InputFile), its format
// and claimed size checked from the header (PictureHeader: PNG, JPEG and BMP only) before any
// decoder sees it. Decoding is the drawing back end's (cairo/PixbufPicture, gdiplus/), which
// also implements the two calls below that need it. Reentrant.
#ifndef TOLVEX_RENDERER_PICTURE_H
#define TOLVEX_RENDERER_PICTURE_H

#include <cstdint>
#include <string>

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
