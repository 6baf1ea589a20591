// Reading a picture as RGB rows (see PictureRows.h).
#include "tools/preview/PictureRows.h"

#include "renderer/Failure.h"
#include "tools/cli/ToolError.h"

namespace menutool {
namespace render = tolvex::render;

RgbPicture ReadPictureRows(const std::string& path, const std::string& what) {
  // The renderer keeps the first reason of a call: start this one with none.
  render::ClearFailure();
  render::PictureFile file;
  if (const render::Status s = render::ReadPictureFile(path, &file); s != render::Status::kOk)
    throw ToolError(path, what + render::FailureReason(s));
  RgbPicture picture;
  std::string why;
  if (render::DecodeRgb(file, &picture, &why) != render::Status::kOk)
    throw ToolError(path, what + "the picture " + why);
  return picture;
}

}  // namespace menutool
