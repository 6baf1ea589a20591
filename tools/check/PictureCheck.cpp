// Looking at the files a template names (see PictureCheck.h).
#include "tools/check/PictureCheck.h"

#include "tools/io/Reason.h"

#include "platform/Os.h"
#include "renderer/InputFile.h"
#include "renderer/Picture.h"
#include "renderer/PictureHeader.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <filesystem>

namespace menutool {
namespace render = tolvex::render;
namespace os = tolvex::platform::os;
using tolvex::platform::StatusCode;
namespace {

std::string SizeText(long long bytes) {
  return bytes >= (1LL << 20) ? std::to_string(bytes >> 20) + " MB" : std::to_string(bytes) + " bytes";
}

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

// A decoder may end a picture that stops early without an error; the rows it delivered tell
// (an interlaced picture delivers some rows more than once).
void OnAreaUpdated(GdkPixbufLoader*, int, int, int, int height, gpointer rows) {
  *static_cast<long long*>(rows) += height;
}

}  // namespace

std::optional<std::string> PictureProblem(const std::string& path) {
  os::PathInfo info;
  if (auto problem = LookAtInput(path, &info)) return problem;
  const std::string tooLarge = "more than the " +
                               SizeText(static_cast<long long>(render::kMaxPictureBytes)) +
                               " a picture may have";
  if (info.size > render::kMaxPictureBytes)
    return "is " + SizeText(static_cast<long long>(info.size)) + ", " + tooLarge;
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

  GError* error = nullptr;
  GdkPixbufLoader* loader =
      gdk_pixbuf_loader_new_with_type(render::LoaderName(header.format), &error);
  if (!loader) {
    std::string problem = std::string("cannot be decoded: ") + (error ? error->message : "");
    if (error) g_error_free(error);
    return problem;
  }
  long long rows = 0;
  g_signal_connect(loader, "area-updated", G_CALLBACK(OnAreaUpdated), &rows);
  bool decoded = gdk_pixbuf_loader_write(loader, reinterpret_cast<const guchar*>(bytes.data()),
                                         bytes.size(), &error);
  decoded = gdk_pixbuf_loader_close(loader, decoded ? &error : nullptr) && decoded;
  GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader);
  const bool whole = decoded && pixels && rows >= gdk_pixbuf_get_height(pixels);
  std::optional<std::string> problem;
  if (!whole)
    problem = std::string("is truncated or corrupt") + (error ? std::string(": ") + error->message : "");
  if (error) g_error_free(error);
  g_object_unref(loader);
  return problem;
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
