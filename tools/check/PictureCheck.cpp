// Looking at the files a template names (see PictureCheck.h).
#include "tools/check/PictureCheck.h"

#include "tools/io/Reason.h"

#include "platform/Os.h"
#include "renderer/InputFile.h"
#include "renderer/Picture.h"
#include "renderer/PictureHeader.h"

#include <filesystem>

namespace menutool {
namespace render = tolvex::render;
namespace os = tolvex::platform::os;
using tolvex::platform::StatusCode;
namespace {

// Why a file of this kind and size is not a file that can be read as input, or nullopt.
std::optional<std::string> KindProblem(const os::PathInfo& info) {
  if (info.kind == os::PathKind::kFolder) return "is a folder, not a file";
  if (info.kind == os::PathKind::kPipe) return "is a named pipe (FIFO), which would block the renderer";
  if (info.kind != os::PathKind::kFile) return "is not a regular file";
  if (info.size == 0) return "is empty";
  return std::nullopt;
}

// Looks at `path` as an input: nullopt when it is a regular, non-empty file, what it is
// otherwise.
std::optional<std::string> LookAtInput(const std::string& path, os::PathInfo* info) {
  const auto looked = os::LookAt(path, info);
  if (looked.code() == StatusCode::kNotFound) return "does not exist";
  if (!looked.ok()) return "cannot be read: " + Reason(looked);
  return KindProblem(*info);
}

// Why what was read from `path` cannot be looked at further: the read's failure in words.
std::string ReadProblem(const tolvex::platform::Status& read) {
  // Only a regular file is read, so the name was swapped for something else since the look.
  if (read.code() == StatusCode::kInvalidArgument || read.code() == StatusCode::kIsDirectory)
    return "changed while it was looked at";
  return "cannot be read: " + Reason(read);
}

}  // namespace

std::optional<std::string> PictureProblem(const std::string& path) {
  os::PathInfo info;
  if (auto problem = LookAtInput(path, &info)) return problem;
  const std::string tooLarge = "more than the " +
                               SizeText(render::kMaxPictureBytes) +
                               " a picture may have";
  if (info.size > render::kMaxPictureBytes)
    return "is " + SizeText(info.size) + ", " + tooLarge;
  std::string bytes;
  const auto read = os::ReadWholeFile(path, &bytes, nullptr, render::kMaxPictureBytes);
  if (read.code() == StatusCode::kNoSpace) return "has grown to " + tooLarge;
  if (!read.ok()) return ReadProblem(read);

  // The renderer's own reading of the header: format, claimed size, rows a BMP promises.
  const render::PictureHeader header = render::ReadPictureHeader(bytes);
  if (!header.problem.empty()) return "cannot be used: " + header.problem;
  if (header.width > render::kMaxPictureSide || header.height > render::kMaxPictureSide ||
      header.width * header.height > render::kMaxPicturePixels)
    return "claims " + std::to_string(header.width) + "x" + std::to_string(header.height) +
           " pixels, more than a picture may have";
  if (!header.dataProblem.empty()) return header.dataProblem;

  // The renderer's own decoder, which refuses what it refuses for the renderer too.
  std::string why;
  if (render::DecodeRgb(render::PictureFile{std::move(bytes), header}, nullptr, &why) !=
      render::Status::kOk)
    return why;
  return std::nullopt;
}

std::optional<std::string> InputFileProblem(const std::string& path) {
  os::PathInfo info;
  if (auto problem = LookAtInput(path, &info)) return problem;
  const auto readable = os::CheckReadable(path);
  if (!readable.ok()) return ReadProblem(readable);
  return std::nullopt;
}

std::optional<std::string> OutputProblem(const std::string& path) {
  namespace fs = std::filesystem;
  std::string folder = fs::path(path).parent_path().string();
  if (folder.empty()) folder = ".";
  os::PathInfo info;
  if (!os::LookAt(folder, &info).ok() || info.kind != os::PathKind::kFolder)
    return "its folder " + folder + " does not exist";
  const auto writable = os::CheckFolderWritable(folder);
  if (!writable.ok()) return "its folder " + folder + " cannot be written: " + Reason(writable);
  if (os::LookAt(path, &info, /*followLinks=*/false).ok() && info.kind == os::PathKind::kFolder)
    return "is a folder";
  if (os::LookAt(path, &info).ok() && info.kind != os::PathKind::kFile)
    return "is not a regular file";
  return std::nullopt;
}

}  // namespace menutool
