// Decoding pictures with GDI+ (whose decoders are the system's WIC codecs), from the bytes
// ReadPictureFile read and checked, and stretching them to the size they are drawn at.
// Decoded pictures are premultiplied 32-bit bitmaps that own their pixels. Reentrant.
#ifndef TOLVEX_RENDERER_GDIPLUS_GDIPLUSPICTURE_H
#define TOLVEX_RENDERER_GDIPLUS_GDIPLUSPICTURE_H

#include <string>

#include "renderer/Picture.h"
#include "renderer/gdiplus/Gdiplus.h"

namespace tolvex::render {

// Decodes the picture at `path` at its own size.
Status LoadPicture(const std::string& path, BitmapPtr* out);

// Decodes the picture at `path` and resamples it to exactly `width` x `height` (the aspect is
// not kept: a picture fills the rectangle it is given): area-averaging when reducing, bilinear
// when enlarging.
Status LoadPictureAt(const std::string& path, int width, int height, BitmapPtr* out);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_GDIPLUS_GDIPLUSPICTURE_H
