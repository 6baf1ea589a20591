// Reading and checking a picture file before it is decoded, and decoded rows as plain RGB.
#include "renderer/Picture.h"

#include "renderer/Failure.h"
#include "renderer/InputFile.h"

namespace tolvex::render {

bool SizeAcceptable(int64_t width, int64_t height) {
  return width > 0 && height > 0 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
         width * height <= kMaxPicturePixels;
}

Status ReadPictureFile(const std::string& path, PictureFile* out) {
  InputFile file;
  if (const Status s = ReadInputFile(path, "picture", kMaxPictureBytes,
                                     Status::kPictureUnreadable, &file);
      s != Status::kOk) {
    return s;
  }
  const PictureHeader header = ReadPictureHeader(file.bytes);
  if (!header.problem.empty()) {
    return Fail(Status::kPictureUnreadable, "cannot read picture " + path + ": " + header.problem);
  }
  if (!SizeAcceptable(header.width, header.height)) {
    return Fail(Status::kPictureTooLarge,
                "picture " + path + " is too large: " + std::to_string(header.width) + " x " +
                    std::to_string(header.height) + " pixels");
  }
  if (!header.dataProblem.empty()) {
    return Fail(Status::kPictureUnreadable, "picture " + path + " " + header.dataProblem);
  }
  out->bytes = std::move(file.bytes);
  out->header = header;
  return Status::kOk;
}

void CopyRgbRows(int width, int height, const uint8_t* rows, ptrdiff_t stride, int step, bool bgr,
                 RgbPicture* out) {
  out->width = width;
  out->height = height;
  out->rgb.resize(static_cast<size_t>(width) * height * 3);
  const int red = bgr ? 2 : 0;
  for (int y = 0; y < height; ++y) {
    const uint8_t* in = rows + static_cast<ptrdiff_t>(y) * stride;
    for (int x = 0; x < width; ++x, in += step) {
      uint8_t* to = out->At(x, y);
      to[0] = in[red];
      to[1] = in[1];
      to[2] = in[2 - red];
    }
  }
}

}  // namespace tolvex::render
