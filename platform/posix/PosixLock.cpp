// FolderLock on POSIX: an exclusive flock() on the folder that holds the profile file. Every
// writer of the platform layer, in any thread of any process, takes it around its whole
// read-modify-replace, so no update is lost.
//
// Why this kind of lock:
//  - flock() locks belong to the open file description. Two threads of one process that each
//    open the folder get two descriptions and exclude each other, just as two processes do, so
//    one lock covers threads and processes alike. Per-process fcntl() locks would not: they
//    never conflict within a process, and any close() of any descriptor of the file by any
//    thread silently drops them.
//  - We lock the folder, not the data file. Each write renames a new file over the old one, so
//    a lock on the data file would sit on an inode that is no longer the file: a waiter would
//    wake up holding a lock on the replaced copy (fixable only by re-checking the inode after
//    locking and retrying). The file may also not exist yet. The folder stays the same inode
//    for the life of the file, needs no lock file beside the user's files, and is where the
//    rename happens. The price is that writers of different files in one folder take turns;
//    each holds the lock for one small file's read and write.
//  - Readers take no lock: the atomic rename lets them see the old file or the new one.
// Lock order: a call holds at most one FolderLock at a time (CopyFileA reads its source
// without one), so there is no order to get wrong. The descriptor is close-on-exec, and the
// lock is released explicitly with LOCK_UN so a child forked meanwhile cannot keep it.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixStatus.h"
#include "platform/posix/Syscalls.h"

namespace tolvex::platform::os {
FolderLock::~FolderLock() {
  if (m_handle >= 0) {
    ::flock(m_handle, LOCK_UN);
    ::close(m_handle);
  }
}

Status FolderLock::Acquire(const std::string& file) {
  if (m_handle >= 0) return Status::Error(StatusCode::kInvalidArgument);
  // The folder open is not a fault-injection point; the flock below is.
  int fd = ::open(posix::FolderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return StatusFromErrno(errno);
  if (sys::Flock(fd, LOCK_EX) != 0) {
    Status status = StatusFromErrno(errno);
    sys::CloseQuietly(fd);
    return status;
  }
  m_handle = fd;
  return Status::Ok();
}

}  // namespace tolvex::platform::os
