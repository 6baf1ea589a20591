// Reading a template or picture whole, without blocking and within a size limit.
#include "renderer/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int fd) : m_fd(fd) {}
  ~Descriptor() {
    if (m_fd >= 0) close(m_fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd() const { return m_fd; }

 private:
  int m_fd;
};

std::string Megabytes(size_t bytes) { return std::to_string(bytes >> 20) + " MB"; }

}  // namespace

Status ReadInputFile(const std::string& path, const char* kind, size_t limit, Status failure,
                     InputFile* file) {
  const std::string what = std::string("cannot read ") + kind + " " + path;
  // O_NONBLOCK: opening a FIFO without a writer, or a device, must not wait; O_NOCTTY: a
  // terminal named by mistake must not become ours.
  Descriptor input(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (input.fd() < 0) return FailErrno(failure, what, errno);
  struct stat info {};
  if (fstat(input.fd(), &info) != 0) return FailErrno(failure, what, errno);
  if (S_ISDIR(info.st_mode)) return Fail(failure, what + ": it is a folder");
  if (!S_ISREG(info.st_mode)) return Fail(failure, what + ": not a regular file");
  if (static_cast<unsigned long long>(info.st_size) > limit) {
    return Fail(failure, what + ": larger than " + Megabytes(limit));
  }

  // The file may grow while we read it; one byte over the limit is enough to know.
  std::string bytes(static_cast<size_t>(info.st_size) + 1, '\0');
  size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) {
      if (bytes.size() > limit) return Fail(failure, what + ": larger than " + Megabytes(limit));
      bytes.resize(std::min(limit + 1, bytes.size() * 2));
    }
    const ssize_t got = read(input.fd(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0) {
      if (errno == EINTR) continue;
      return FailErrno(failure, what, errno);
    }
    if (got == 0) break;
    filled += static_cast<size_t>(got);
  }
  bytes.resize(filled);
  file->bytes = std::move(bytes);
  file->device = info.st_dev;
  file->inode = info.st_ino;
  return Status::kOk;
}

}  // namespace tolvex::render
