// The forwarding wrapper over the POSIX calls that can fail a profile write: every open, read,
// write, fsync, rename and flock of the platform layer goes through here, so that a test can
// make the nth one fail (FaultInjection.h). Each retries on EINTR; thread-safe.
#ifndef TOLVEX_PLATFORM_POSIX_SYSCALLS_H
#define TOLVEX_PLATFORM_POSIX_SYSCALLS_H

#include <sys/types.h>

#include <cstddef>

namespace tolvex::platform::sys {

int Open(const char* path, int flags, mode_t mode = 0);
int OpenAt(int dirFd, const char* path, int flags, mode_t mode = 0);
ssize_t Read(int fd, void* buffer, size_t count);
ssize_t Write(int fd, const void* buffer, size_t count);
int Fsync(int fd);
int Rename(const char* from, const char* to);
int Flock(int fd, int operation);

// Closes `fd` keeping errno as it was; for cleanup paths.
void CloseQuietly(int fd);

}  // namespace tolvex::platform::sys

#endif  // TOLVEX_PLATFORM_POSIX_SYSCALLS_H
