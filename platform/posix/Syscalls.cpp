// The POSIX calls behind the fault-injection seam. A planned failure sets errno and returns -1
// exactly as the real call would; otherwise the call is made, retried while it reports EINTR.
#include "platform/posix/Syscalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/FaultInjection.h"

namespace tolvex::platform::sys {
namespace {

bool Planned(Primitive primitive) {
  if (int error = TakePlannedFailure(primitive)) {
    errno = error;
    return true;
  }
  return false;
}

template <typename Call>
auto RetryOnInterrupt(Call call) {
  for (;;) {
    auto result = call();
    if (result != -1 || errno != EINTR) return result;
  }
}

}  // namespace

int Open(const char* path, int flags, mode_t mode) {
  if (Planned(Primitive::Open)) return -1;
  return RetryOnInterrupt([&] { return ::open(path, flags | O_CLOEXEC, mode); });
}

int OpenAt(int dirFd, const char* path, int flags, mode_t mode) {
  if (Planned(Primitive::Open)) return -1;
  return RetryOnInterrupt([&] { return ::openat(dirFd, path, flags | O_CLOEXEC, mode); });
}

ssize_t Read(int fd, void* buffer, size_t count) {
  if (Planned(Primitive::Read)) return -1;
  return RetryOnInterrupt([&] { return ::read(fd, buffer, count); });
}

ssize_t Write(int fd, const void* buffer, size_t count) {
  if (Planned(Primitive::Write)) return -1;
  return RetryOnInterrupt([&] { return ::write(fd, buffer, count); });
}

int Fsync(int fd) {
  if (Planned(Primitive::Sync)) return -1;
  return RetryOnInterrupt([&] { return ::fsync(fd); });
}

int Rename(const char* from, const char* to) {
  if (Planned(Primitive::Rename)) return -1;
  return ::rename(from, to);
}

int Flock(int fd, int operation) {
  if (Planned(Primitive::Lock)) return -1;
  return RetryOnInterrupt([&] { return ::flock(fd, operation); });
}

void CloseQuietly(int fd) {
  if (fd < 0) return;
  int saved = errno;
  ::close(fd);
  errno = saved;
}

}  // namespace tolvex::platform::sys
