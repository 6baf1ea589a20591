// Looking at the files a template names (see PictureCheck.h).
#include "tools/PictureCheck.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

namespace menutool {
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

struct Claimed {
  int width = 0;
  int height = 0;
  long long rows = 0;  // rows decoded so far (an interlaced picture counts some twice)
};

void OnSizePrepared(GdkPixbufLoader*, int width, int height, gpointer data) {
  auto* claimed = static_cast<Claimed*>(data);
  claimed->width = width;
  claimed->height = height;
}

// A decoder may end a picture that stops early without an error; the rows it delivered tell.
void OnAreaUpdated(GdkPixbufLoader*, int, int, int, int height, gpointer data) {
  static_cast<Claimed*>(data)->rows += height;
}

}  // namespace

std::optional<std::string> PictureProblem(const std::string& path) {
  struct stat st {};
  std::string why;
  int fd = OpenInput(path, &st, &why);
  if (fd < 0) return why;
  if (st.st_size > kMaxPictureBytes) {
    close(fd);
    return "is " + SizeText(st.st_size) + ", more than the " + SizeText(kMaxPictureBytes) +
           " a picture may have";
  }
  // The size the header claims, read through the descriptor already checked to be a regular
  // file (its /proc name reopens that very file).
  Claimed claimed;
  const std::string opened = "/proc/self/fd/" + std::to_string(fd);
  if (gdk_pixbuf_get_file_info(opened.c_str(), &claimed.width, &claimed.height) &&
      static_cast<long long>(claimed.width) * claimed.height > kMaxPicturePixels) {
    close(fd);
    return "claims " + std::to_string(claimed.width) + "x" + std::to_string(claimed.height) +
           " pixels, more than a picture may have";
  }
  claimed = Claimed{};
  // Fed to the decoder piece by piece; a header claiming an absurd size that the probe above
  // missed is still caught before the pixels are decoded.
  GdkPixbufLoader* loader = gdk_pixbuf_loader_new();
  g_signal_connect(loader, "size-prepared", G_CALLBACK(OnSizePrepared), &claimed);
  g_signal_connect(loader, "area-updated", G_CALLBACK(OnAreaUpdated), &claimed);
  GError* error = nullptr;
  std::vector<guchar> chunk(1 << 14);
  bool tooLarge = false, decoded = true;
  int readError = 0;
  for (;;) {
    ssize_t n = read(fd, chunk.data(), chunk.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) readError = errno;
    if (n <= 0) break;
    decoded = gdk_pixbuf_loader_write(loader, chunk.data(), static_cast<gsize>(n), &error);
    tooLarge = static_cast<long long>(claimed.width) * claimed.height > kMaxPicturePixels;
    if (!decoded || tooLarge) break;
  }
  close(fd);
  GError* closing = nullptr;
  if (!gdk_pixbuf_loader_close(loader, decoded && !tooLarge && !readError ? &closing : nullptr))
    decoded = false;
  if (!error) error = closing;
  else if (closing) g_error_free(closing);
  const bool pixels = gdk_pixbuf_loader_get_pixbuf(loader) != nullptr;
  g_object_unref(loader);

  std::optional<std::string> problem;
  if (tooLarge)
    problem = "claims " + std::to_string(claimed.width) + "x" + std::to_string(claimed.height) +
              " pixels, more than a picture may have";
  else if (readError)
    problem = std::string("cannot be read: ") + std::strerror(readError);
  else if (error && error->domain == GDK_PIXBUF_ERROR && error->code == GDK_PIXBUF_ERROR_UNKNOWN_TYPE)
    problem = "is not a picture in a format that can be read";
  else if (!decoded || !pixels || claimed.rows < claimed.height)
    problem = std::string("is truncated or corrupt") + (error ? std::string(": ") + error->message : "");
  if (error) g_error_free(error);
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
