// Drawing the preview (see Preview.h). The mask is black except for the button bands (see
// MaskAreas.h). Their pixels are tinted and a dashed box is drawn round each, so that a
// highlight that misses its button shows at a glance. The drawing is done on plain pixels;
// the PNG is made in memory by the renderer's picture back end (renderer/Picture.h) and written
// like every other output (OutputFile.h).
#include "tools/preview/Preview.h"

#include "tools/cli/ToolError.h"
#include "tools/io/OutputFile.h"
#include "tools/preview/MaskAreas.h"
#include "tools/preview/PictureRows.h"

#include <string>
#include <vector>

namespace menutool {
namespace {

// Mixes `colour` over the pixel `p` with the opacity `alpha` (0..255).
void Blend(uint8_t* p, const uint8_t colour[3], unsigned alpha) {
  for (int c = 0; c < 3; ++c)
    p[c] = static_cast<uint8_t>((colour[c] * alpha + p[c] * (255 - alpha) + 127) / 255);
}

// A one-pixel dashed outline 2 pixels outside `box` (4 pixels drawn, 3 left out, clockwise from
// the top-left corner), clipped to the picture.
void DashedBox(RgbPicture* picture, const PixelBox& box, const uint8_t colour[3]) {
  const int left = box.left - 3, top = box.top - 3, right = box.right + 2, bottom = box.bottom + 2;
  long step = 0;
  auto dot = [&](int x, int y) {
    if (step++ % 7 < 4 && x >= 0 && y >= 0 && x < picture->width && y < picture->height)
      Blend(picture->At(x, y), colour, 255);
  };
  for (int x = left; x < right; ++x) dot(x, top);
  for (int y = top; y < bottom; ++y) dot(right, y);
  for (int x = right; x > left; --x) dot(x, bottom);
  for (int y = bottom; y > top; --y) dot(left, y);
}

}  // namespace

int WritePreview(const std::string& menuPath, const std::string& maskPath, const std::string& png,
                 const PlayerView* player) {
  RgbPicture menu = ReadPictureRows(menuPath, "cannot read the picture: ");
  const MaskAreas mask = ReadMaskAreas(maskPath);
  if (mask.width != menu.width || mask.height != menu.height)
    throw ToolError(maskPath, "the mask is not the size of the menu picture");

  // Over the menu: what a player draws (the marked pixels inside the highlighted button's area,
  // in the highlight colour), or else every marked pixel tinted magenta at 60%.
  const uint8_t magenta[3] = {255, 0, 255};
  const uint8_t highlight[3] = {player ? player->r : uint8_t{0}, player ? player->g : uint8_t{0},
                                player ? player->b : uint8_t{0}};
  for (int y = 0; y < menu.height; ++y)
    for (int x = 0; x < menu.width; ++x) {
      if (!mask.Marked(x, y)) continue;
      if (!player) {
        Blend(menu.At(x, y), magenta, 153);
      } else if (player->highlighted < player->areas.size() &&
                 player->areas[player->highlighted].Contains(x, y)) {
        Blend(menu.At(x, y), highlight, 255);
      }
    }
  const uint8_t cyan[3] = {0, 255, 255};
  const std::vector<PixelBox>& boxes = player ? player->areas : mask.pieces;
  for (const PixelBox& box : boxes) DashedBox(&menu, box, cyan);

  std::string bytes;
  std::string why;
  if (tolvex::render::EncodePng(menu, &bytes, &why) != tolvex::render::Status::kOk)
    throw ToolError(png, "cannot make the preview: " + why);
  WriteOutputFile(png, bytes);
  return static_cast<int>(boxes.size());
}

}  // namespace menutool
