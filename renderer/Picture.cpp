// Reading and checking a picture file before it is decoded.
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

}  // namespace tolvex::render
