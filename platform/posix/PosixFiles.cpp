// The POSIX implementation of the seam's file functions other than the replace and the lock:
// whole-file reads, link resolution, the checks before a write, CopyFile and folder creation.
// Stateless; safe from any thread.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/FaultInjection.h"
#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixReplace.h"
#include "platform/posix/PosixStatus.h"
#include "platform/posix/Syscalls.h"

namespace tolvex::platform {
namespace posix {

std::string FolderOf(const std::string& file) {
  std::string::size_type slash = file.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return file.substr(0, slash);
}

std::string BaseNameOf(const std::string& file) {
  std::string::size_type slash = file.find_last_of('/');
  return slash == std::string::npos ? file : file.substr(slash + 1);
}

}  // namespace posix

namespace os {
namespace {

int64_t Nanoseconds(const struct timespec& time) {
  return static_cast<int64_t>(time.tv_sec) * 1000000000 + time.tv_nsec;
}

void FillStamp(const struct stat& info, int64_t takenNs, FileStamp* stamp) {
  stamp->device = info.st_dev;
  stamp->inode = info.st_ino;
  stamp->size = static_cast<uint64_t>(info.st_size);
  stamp->modifiedNs = Nanoseconds(info.st_mtim);
  stamp->changedNs = Nanoseconds(info.st_ctim);
  stamp->takenNs = takenNs;
  stamp->readOnly = (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

int64_t Now() {
  if (const int64_t planned = ClockForTests()) return planned;
  struct timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return Nanoseconds(now);
}

// Whether the times of files on the file system of `fd` change with every write, so that
// equal times (with the racy-time rule of ParseCache.cpp) prove equal content. Only local
// file systems whose kernel driver stamps every write with the system clock in nanoseconds:
// ext2/3/4, XFS, Btrfs, tmpfs, F2FS, ZFS, bcachefs and overlayfs (which passes on the times of
// the file system below). Not NFS, SMB/CIFS, FUSE, 9p, Ceph or FAT/exFAT/NTFS and the like:
// there a server or a daemon sets the times, the client may cache them, or they are coarse
// (two seconds on FAT). Files there are always compared byte for byte.
bool TimesTrusted(int fd) {
  struct statfs info;
  if (::fstatfs(fd, &info) != 0) return false;
  switch (static_cast<unsigned long>(info.f_type)) {
    case 0xEF53:      // ext2, ext3, ext4
    case 0x58465342:  // XFS
    case 0x9123683E:  // Btrfs
    case 0x01021994:  // tmpfs
    case 0xF2F52010:  // F2FS
    case 0x2FC12FC1:  // ZFS
    case 0xCA451A4E:  // bcachefs
    case 0x794C7630:  // overlayfs
      return true;
    default:
      return false;
  }
}

// Reads all of `path`, at most `limit` bytes, or with `startOnly` its first `limit` bytes
// whatever its size; also reports its mode when `mode` is given and stamps it when `stamp`
// is. O_NONBLOCK keeps the open of a FIFO from waiting for a writer; the file is then
// refused, as is anything else that is not a regular file (/dev/zero would never end).
Status ReadAll(const std::string& path, std::string* bytes, mode_t* mode, FileStamp* stamp,
               uint64_t limit = kMaxProfileBytes, bool startOnly = false) {
  const int64_t takenNs = stamp ? Now() : 0;
  int fd = sys::Open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (fd < 0) return StatusFromErrno(errno);
  struct stat info;
  int error = ::fstat(fd, &info) != 0 ? errno : 0;
  if (error == 0 && S_ISDIR(info.st_mode)) error = EISDIR;
  if (error == 0 && !S_ISREG(info.st_mode)) error = EINVAL;
  if (error == 0 && !startOnly && static_cast<uint64_t>(info.st_size) > limit) error = EFBIG;
  if (error != 0) {
    sys::CloseQuietly(fd);
    return StatusFromErrno(error);
  }
  if (mode) *mode = info.st_mode;
  if (stamp) {
    FillStamp(info, takenNs, stamp);
    stamp->timesTrusted = TimesTrusted(fd);
  }
  bytes->clear();
  // The buffer is sized from the file, one byte over, so that one read fills it and the next
  // sees the end without growing it. Only a file that grows while it is read makes it grow,
  // and then it is still cut off at the limit.
  if (startOnly) {
    bytes->resize(static_cast<size_t>(limit));
  } else {
    bytes->resize(info.st_size > 0 ? static_cast<size_t>(info.st_size) + 1 : 65536);
  }
  size_t filled = 0;
  for (;;) {
    if (filled == bytes->size()) {
      if (startOnly) break;
      if (filled > limit) {
        sys::CloseQuietly(fd);
        bytes->clear();
        return StatusFromErrno(EFBIG);
      }
      bytes->resize(filled + 65536);
    }
    ssize_t got = sys::Read(fd, bytes->data() + filled, bytes->size() - filled);
    if (got < 0) {
      Status status = StatusFromErrno(errno);
      sys::CloseQuietly(fd);
      bytes->clear();
      return status;
    }
    if (got == 0) break;
    filled += static_cast<size_t>(got);
  }
  bytes->resize(filled);
  ::close(fd);
  return Status::Ok();
}

}  // namespace

Status ReadWholeFile(const std::string& path, std::string* bytes, FileStamp* stamp,
                     uint64_t limit) {
  return ReadAll(path, bytes, nullptr, stamp, limit);
}

Status ReadFileStart(const std::string& path, size_t count, std::string* bytes,
                     FileStamp* stamp) {
  return ReadAll(path, bytes, nullptr, stamp, count, true);
}

size_t LastSeparator(std::string_view path) { return path.find_last_of('/'); }

bool IsAbsolutePath(std::string_view path) { return !path.empty() && path[0] == '/'; }

std::string FolderOf(const std::string& file) { return posix::FolderOf(file); }

std::string BaseNameOf(const std::string& file) { return posix::BaseNameOf(file); }

Status StampFile(const std::string& path, FileStamp* stamp) {
  struct stat info;
  if (::stat(path.c_str(), &info) != 0) return StatusFromErrno(errno);
  FillStamp(info, 0, stamp);
  return Status::Ok();
}

Status ResolveLinks(const std::string& path, std::string* target) {
  std::string current = path;
  // The same limit on nested links as the kernel's.
  for (int hop = 0; hop < 40; ++hop) {
    struct stat info;
    if (::lstat(current.c_str(), &info) != 0) {
      if (errno == ENOENT || errno == ENOTDIR) break;  // a new file, or CheckReplaceable's case
      return StatusFromErrno(errno);
    }
    if (!S_ISLNK(info.st_mode)) break;
    std::string link(static_cast<size_t>(info.st_size > 0 ? info.st_size : 255) + 1, '\0');
    ssize_t length = ::readlink(current.c_str(), link.data(), link.size());
    if (length < 0) return StatusFromErrno(errno);
    if (static_cast<size_t>(length) >= link.size()) return StatusFromErrno(ENAMETOOLONG);
    link.resize(static_cast<size_t>(length));
    current = link.front() == '/' ? link : posix::FolderOf(current) + "/" + link;
    if (hop == 39) return StatusFromErrno(ELOOP);
  }
  *target = current;
  return Status::Ok();
}

Status CheckReplaceable(const std::string& target, bool* exists) {
  *exists = false;
  struct stat info;
  if (::stat(target.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return StatusFromErrno(EISDIR);
    if (!S_ISREG(info.st_mode)) return StatusFromErrno(EINVAL);
    // No write bit means read-only, also for root, whom access() would let through.
    if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return StatusFromErrno(EACCES);
    if (::access(target.c_str(), W_OK) != 0) return StatusFromErrno(errno);
    *exists = true;
  } else if (errno != ENOENT) {
    return StatusFromErrno(errno);
  }
  // The replace creates a file in the folder, so the folder must exist and be writable.
  std::string folder = posix::FolderOf(target);
  struct stat folderInfo;
  if (::stat(folder.c_str(), &folderInfo) != 0) return StatusFromErrno(errno);
  if (!S_ISDIR(folderInfo.st_mode)) return StatusFromErrno(ENOTDIR);
  if (::access(folder.c_str(), W_OK | X_OK) != 0) return StatusFromErrno(errno);
  return Status::Ok();
}

Status ReplaceFile(const std::string& target, std::string_view bytes) {
  return posix::ReplaceAtomically(target, bytes, nullptr);
}

Status ReplaceFileFrom(const std::string& target, const ContentSource& content) {
  return posix::ReplaceAtomically(target, content, nullptr);
}

Status CopyFile(const std::string& source, const std::string& target, bool failIfExists) {
  if (source.empty() || target.empty()) return StatusFromErrno(EINVAL);
  std::string bytes;
  mode_t mode = 0;
  // The source needs no lock: writers replace it atomically, so any read sees a whole file.
  Status status = ReadAll(source, &bytes, &mode, nullptr);
  if (!status.ok()) return status;

  std::string resolved;
  status = ResolveLinks(target, &resolved);
  if (!status.ok()) return status;
  FolderLock lock;
  status = lock.Acquire(resolved);
  if (!status.ok()) return status;
  bool exists = false;
  status = CheckReplaceable(resolved, &exists);
  if (!status.ok()) return status;
  if (exists && failIfExists) return StatusFromErrno(EEXIST);
  mode_t copyMode = mode & 07777;
  return posix::ReplaceAtomically(resolved, bytes, &copyMode);
}

Status IdentifyFile(const std::string& target, FileIdentity* identity) {
  struct stat folder;
  if (::stat(posix::FolderOf(target).c_str(), &folder) != 0) return StatusFromErrno(errno);
  identity->device = folder.st_dev;
  identity->inode = folder.st_ino;
  identity->name = posix::BaseNameOf(target);
  return Status::Ok();
}

Status CreateFolders(const std::string& folder) {
  if (folder.empty()) return StatusFromErrno(ENOENT);
  std::string::size_type position = 0;
  do {
    position = folder.find('/', position + 1);
    std::string part = folder.substr(0, position);
    if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return StatusFromErrno(errno);
  } while (position != std::string::npos);
  struct stat info;
  if (::stat(folder.c_str(), &info) != 0) return StatusFromErrno(errno);
  if (!S_ISDIR(info.st_mode)) return StatusFromErrno(ENOTDIR);
  return Status::Ok();
}

}  // namespace os
}  // namespace tolvex::platform
