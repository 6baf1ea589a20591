// Picture files as plain pixels, for what the tool draws and measures itself (the preview, the
// button areas of a mask) and for check's trial decode of a picture. Decoding and PNG encoding
// are the system's picture library's, one back end per system (cairo/: gdk-pixbuf and cairo;
// gdiplus/: GDI+); what is drawn on the pixels is the tool's own. Reentrant.
#ifndef TOLVEX_TOOLS_PIXELFILE_H
#define TOLVEX_TOOLS_PIXELFILE_H

#include "renderer/PictureHeader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace menutool {

// An opaque RGB picture, 3 bytes a pixel, row by row from the top.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> rgb;
  uint8_t* At(int x, int y) { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
  const uint8_t* At(int x, int y) const { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
};

// Decodes the picture file at `path` (any alpha is dropped); false, with the decoder's reason
// in `why`, when it cannot.
bool ReadPixels(const std::string& path, Pixels* out, std::string* why);

// `pixels` encoded as a PNG file; false, with the reason in `why`, when it cannot be.
bool EncodePng(const Pixels& pixels, std::string* png, std::string* why);

// Decodes `bytes`, a picture whose header the renderer has read as `format`, to its end: what
// keeps it from decoding whole ("is truncated or corrupt: ..."), or nullopt when it does.
std::optional<std::string> DecodeProblem(const std::string& bytes,
                                         tolvex::render::PictureFormat format);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PIXELFILE_H
