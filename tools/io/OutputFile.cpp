// Atomic writes of the tool's own output files (see OutputFile.h).
#include "tools/io/OutputFile.h"

#include "tools/cli/ToolError.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

namespace menutool {
namespace {

namespace fs = std::filesystem;

// The file a chain of symbolic links ends at, whether or not it exists.
fs::path FollowLinks(fs::path path, const std::string& given) {
  for (int hop = 0; hop < 40; ++hop) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
    fs::path link = fs::read_symlink(path, error);
    if (error) throw ToolError(given, "cannot follow the link: " + error.message());
    path = link.is_absolute() ? link : path.parent_path() / link;
  }
  throw ToolError(given, "too many levels of symbolic links");
}

// A write past the file size limit raises SIGXFSZ, which would kill the tool and leave the
// temporary behind; blocked, the write fails with EFBIG instead, and the signal it raised is
// discarded before the block ends.
class FileSizeSignalBlock {
 public:
  FileSizeSignalBlock() {
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    sigprocmask(SIG_BLOCK, &m_signal, &m_old);
    m_wasPending = IsPending();
  }
  ~FileSizeSignalBlock() {
    const timespec noWait{0, 0};
    if (!m_wasPending && IsPending()) sigtimedwait(&m_signal, nullptr, &noWait);
    sigprocmask(SIG_SETMASK, &m_old, nullptr);
  }

 private:
  bool IsPending() const {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
  }
  sigset_t m_signal, m_old;
  bool m_wasPending = false;
};

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      if (n == 0) errno = ENOSPC;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

}  // namespace

void WriteOutputFile(const std::string& given, std::string_view bytes) {
  const fs::path target = FollowLinks(given.empty() ? fs::path() : fs::path(given), given);
  const fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
  mode_t mask = umask(0);
  umask(mask);
  mode_t mode = 0666 & ~mask;
  struct stat info {};
  if (stat(target.c_str(), &info) == 0) {
    if (!S_ISREG(info.st_mode)) throw ToolError(given, "not a regular file; not replaced");
    if ((info.st_mode & 0222) == 0) throw ToolError(given, "the file is read-only");
    if (access(target.c_str(), W_OK) != 0)
      throw ToolError(given, std::string("cannot write: ") + std::strerror(errno));
    mode = info.st_mode & 07777;
  }

  std::string pattern = (folder / ("." + target.filename().string() + ".out-XXXXXX")).string();
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  FileSizeSignalBlock block;
  int fd = mkstemp(name.data());
  if (fd < 0)
    throw ToolError(given, std::string("cannot write in its folder: ") + std::strerror(errno));
  bool ok = WriteAll(fd, bytes) && fchmod(fd, mode) == 0 && fsync(fd) == 0;
  int error = errno;
  if (close(fd) != 0 && ok) {
    ok = false;
    error = errno;
  }
  if (ok && rename(name.data(), target.c_str()) != 0) {
    ok = false;
    error = errno;
  }
  if (!ok) {
    unlink(name.data());
    throw ToolError(given, std::string("cannot write: ") + std::strerror(error));
  }
  // The rename itself is made durable by flushing the folder.
  int folderFd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (folderFd >= 0) {
    fsync(folderFd);
    close(folderFd);
  }
}

}  // namespace menutool
