// Looking at the files a template names (see PictureCheck.h).
#include "tools/check/PictureCheck.h"

#include "renderer/InputFile.h"
#include "renderer/Picture.h"
#include "renderer/PictureHeader.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

namespace menutool {
namespace render = tolvex::render;
namespace {

std::string SizeText(long long bytes) {
  return bytes >= (1LL << 20) ? std::to_string(bytes >> 20) + " MB" : std::to_string(bytes) + " bytes";
}

// Why `st` is not a file that can be read as input, or nullopt.
std::optional<std::string> KindProblem(const struct stat& st) {
  if (S_ISDIR(st.st_mode)) return "is a folder, not a file";
  if (S_ISFIFO(st.st_mode)) return "is a named pipe (FIFO), which would block the renderer";
  if (!S_ISREG(st.st_mode)) return "is not a regular file";
  if (st.st_size == 0) return "is empty";
  return std::nullopt;
}

// Opens `path` for reading without blocking on a FIFO or device; fd -1 and `why` on failure.
int OpenInput(const std::string& path, struct stat* st, std::string* why) {
  struct stat first {};
  if (stat(path.c_str(), &first) != 0) {
    *why = errno == ENOENT ? "does not exist" : std::string("cannot be read: ") + std::strerror(errno);
    return -1;
  }
  if (auto kind = KindProblem(first)) {
    *why = *kind;
    return -1;
  }
  int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    *why = std::string("cannot be read: ") + std::strerror(errno);
    return -1;
  }
  // What was opened may have been swapped for something else since the stat.
  if (fstat(fd, st) != 0 || KindProblem(*st)) {
    *why = KindProblem(*st).value_or("changed while it was looked at");
    close(fd);
    return -1;
  }
  return fd;
}

// A decoder may end a picture that stops early without an error; the rows it delivered tell
// (an interlaced picture delivers some rows more than once).
void OnAreaUpdated(GdkPixbufLoader*, int, int, int, int height, gpointer rows) {
  *static_cast<long long*>(rows) += height;
}

}  // namespace

std::optional<std::string> PictureProblem(const std::string& path) {
  struct stat st {};
  std::string why;
  int fd = OpenInput(path, &st, &why);
  if (fd < 0) return why;
  if (st.st_size > static_cast<off_t>(render::kMaxPictureBytes)) {
    close(fd);
    return "is " + SizeText(st.st_size) + ", more than the " +
           SizeText(static_cast<long long>(render::kMaxPictureBytes)) + " a picture may have";
  }
  std::string bytes;
  std::vector<char> chunk(1 << 16);
  int readError = 0;
  for (;;) {
    ssize_t n = read(fd, chunk.data(), chunk.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) readError = errno;
    if (n <= 0 || bytes.size() + static_cast<size_t>(n) > render::kMaxPictureBytes) break;
    bytes.append(chunk.data(), static_cast<size_t>(n));
  }
  close(fd);
  if (readError) return std::string("cannot be read: ") + std::strerror(readError);

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
  struct stat st {};
  std::string why;
  int fd = OpenInput(path, &st, &why);
  if (fd < 0) return why;
  close(fd);
  return std::nullopt;
}

std::optional<std::string> OutputProblem(const std::string& path) {
  namespace fs = std::filesystem;
  std::string folder = fs::path(path).parent_path().string();
  if (folder.empty()) folder = ".";
  struct stat st {};
  if (stat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
    return "its folder " + folder + " does not exist";
  if (access(folder.c_str(), W_OK | X_OK) != 0)
    return "its folder " + folder + " cannot be written: " + std::strerror(errno);
  if (lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return "is a folder";
  if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) return "is not a regular file";
  return std::nullopt;
}

}  // namespace menutool
