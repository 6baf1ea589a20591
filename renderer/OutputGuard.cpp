// Refusing an output that is one of the render's inputs, the other renderer's output, or a
// file the renderer did not make.
#include "renderer/OutputGuard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <optional>

#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

// What a path names: an existing file by device and inode; a file yet to be made by its
// folder's device and inode and its own name.
struct Identity {
  dev_t device = 0;
  ino_t inode = 0;
  std::string name;  // empty for an existing file

  bool operator==(const Identity& o) const {
    return device == o.device && inode == o.inode && name == o.name;
  }
};

std::optional<Identity> Identify(const std::string& path) {
  std::string target;
  if (!platform::os::ResolveLinks(path, &target).ok()) return std::nullopt;
  struct stat info {};
  if (stat(target.c_str(), &info) == 0) return Identity{info.st_dev, info.st_ino, std::string()};
  if (errno != ENOENT) return std::nullopt;
  if (stat(platform::posix::FolderOf(target).c_str(), &info) != 0) return std::nullopt;
  return Identity{info.st_dev, info.st_ino, platform::posix::BaseNameOf(target)};
}

uint32_t Little(const unsigned char* at, int bytes) {
  uint32_t value = 0;
  for (int i = bytes - 1; i >= 0; --i) value = (value << 8) | at[i];
  return value;
}

// Whether the `size` bytes of a file starting with `header` (54 bytes) are a BMP as
// EncodeBmp24 writes it: the file and info headers, 24 bits a pixel, no compression, rows
// padded to four bytes, and nothing after them.
bool IsOurBmp(const unsigned char* header, uint64_t size) {
  if (header[0] != 'B' || header[1] != 'M' || Little(header + 2, 4) != size) return false;
  if (Little(header + 10, 4) != 54 || Little(header + 14, 4) != 40) return false;
  const auto width = static_cast<int32_t>(Little(header + 18, 4));
  const auto height = static_cast<int32_t>(Little(header + 22, 4));
  if (width <= 0 || height == 0 || height == INT32_MIN) return false;
  if (Little(header + 26, 2) != 1 || Little(header + 28, 2) != 24 || Little(header + 30, 4) != 0)
    return false;
  const uint64_t rowBytes = (static_cast<uint64_t>(width) * 3 + 3) & ~uint64_t{3};
  return size == 54 + rowBytes * static_cast<uint64_t>(height < 0 ? -int64_t{height} : height);
}

}  // namespace

Status CheckOutputIsOurs(const std::string& output) {
  std::string target;
  if (!platform::os::ResolveLinks(output, &target).ok()) return Status::kOk;
  struct stat info {};
  // Not there yet, or no regular file: the write makes it or says why it cannot.
  if (stat(target.c_str(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size == 0) {
    return Status::kOk;
  }
  const std::string refused = "refusing to replace output " + output + ": ";
  const int fd = open(target.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) return FailErrno(Status::kOutputUnwritable, refused + "cannot look at it", errno);
  unsigned char header[54];
  ssize_t got = 0;
  do {
    got = pread(fd, header, sizeof header, 0);
  } while (got < 0 && errno == EINTR);
  int error = got < 0 ? errno : 0;
  struct stat opened {};
  if (got >= 0 && fstat(fd, &opened) != 0) error = errno;
  close(fd);
  if (error != 0) return FailErrno(Status::kOutputUnwritable, refused + "cannot look at it", error);
  if (got != static_cast<ssize_t>(sizeof header) ||
      !IsOurBmp(header, static_cast<uint64_t>(opened.st_size))) {
    return Fail(Status::kOutputUnwritable,
                refused + "the file there is not a BMP picture the renderer made");
  }
  return Status::kOk;
}

Status CheckOutputIsNoInput(const std::string& output, const TemplateFile& file,
                            const Page& page, const std::string& otherOutput) {
  const auto self = Identify(output);
  if (!self) return Status::kOk;  // the write itself will say what is wrong with it
  const std::string refused = "refusing to write output " + output;
  if (*self == Identity{file.device(), file.inode(), std::string()}) {
    return Fail(Status::kOutputUnwritable, refused + ": it is the template itself");
  }
  std::vector<std::string> pictures{page.background};
  for (const Button& button : page.buttons) {
    pictures.push_back(button.picture);
    pictures.push_back(button.framePicture);
  }
  for (const std::string& picture : pictures) {
    if (picture.empty()) continue;
    if (Identify(picture) == self) {
      return Fail(Status::kOutputUnwritable, refused + ": it is the picture " + picture);
    }
  }
  if (Identify(otherOutput) == self) {
    return Fail(Status::kOutputUnwritable,
                refused + ": it is also the other output " + otherOutput);
  }
  return Status::kOk;
}

}  // namespace tolvex::render
