// Writing an output picture through a temporary file in the same folder and a rename.
#include "renderer/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <random>

#include "renderer/Failure.h"


namespace tolvex::render {
namespace {

// A name no other writer uses: the pid separates processes, the counter threads of one
// process, and the random part a pid reused after a crash left a temporary behind.
std::string TemporaryName(const std::string& path) {
  static std::atomic<unsigned> counter{0};
  thread_local std::mt19937 random{std::random_device{}()};
  const auto slash = path.find_last_of('/');
  const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  return folder + "." + base + ".tmp" + std::to_string(getpid()) + "-" +
         std::to_string(counter.fetch_add(1)) + "-" + std::to_string(random() % 100000);
}

bool WriteAll(int fd, const std::string& bytes) {
  const char* at = bytes.data();
  size_t left = bytes.size();
  while (left > 0) {
    const ssize_t n = write(fd, at, left);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    at += n;
    left -= static_cast<size_t>(n);
  }
  return true;
}

}  // namespace

Status ReplaceFile(const std::string& path, const std::string& bytes) {
  if (path.empty()) return Fail(Status::kOutputUnwritable, "no output named");
  std::string temporary;
  int fd = -1;
  for (int attempt = 0; attempt < 8 && fd < 0; ++attempt) {
    temporary = TemporaryName(path);
    fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0 && errno != EEXIST) return FailErrno(Status::kOutputUnwritable, "cannot write output " + path, errno);
  }
  if (fd < 0) return FailErrno(Status::kOutputUnwritable, "cannot write output " + path, EEXIST);

  struct stat existing {};
  bool ok = true;
  if (stat(path.c_str(), &existing) == 0) {
    // A read-only target stays read-only for us too: rename would replace it regardless.
    if (access(path.c_str(), W_OK) != 0) ok = false;
    if (ok) fchmod(fd, existing.st_mode & 07777);
  }
  ok = ok && WriteAll(fd, bytes) && fsync(fd) == 0;
  ok = close(fd) == 0 && ok;
  ok = ok && rename(temporary.c_str(), path.c_str()) == 0;
  if (!ok) {
    const int error = errno;
    unlink(temporary.c_str());
    return FailErrno(Status::kOutputUnwritable, "cannot write output " + path, error);
  }
  return Status::kOk;
}

}  // namespace tolvex::render
