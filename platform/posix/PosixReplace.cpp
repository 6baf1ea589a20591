// The atomic replace of a file on POSIX: the new bytes go to a file beside the old one (same
// folder, so same file system), are flushed with fsync, and are renamed over the old name.
// A reader, a crash or a SIGKILL at any moment sees the old file or the new one, never a mix,
// and a failure at any step leaves the old file byte for byte and no temporary file behind.
// (A writer killed in the short moment between naming its temporary file and the rename
// leaves that file; the next write of the same file removes it.)
// Callers serialise writers with FolderLock; this file keeps no state of its own.
//
// What the replace keeps: the mode bits, and the owner and group where we may set them (root,
// or our own file and one of our groups). A symbolic link stays a link, because the caller
// resolves links first and replaces the file the link ends at.
// What it cannot keep: the identity of the inode. A file with several hard links is split:
// the name we write gets the new content, its other names keep the old bytes. We choose this
// over rewriting the shared inode in place, which could leave a torn file after a crash or a
// full disk; user files with hard links are rare, lost files are not acceptable. ACLs,
// extended attributes and the inode number are not carried over either.
#include "platform/posix/PosixReplace.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <dirent.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixStatus.h"
#include "platform/posix/Syscalls.h"

namespace tolvex::platform::posix {
namespace {

// Going over RLIMIT_FSIZE raises SIGXFSZ, whose default action kills the process. While the
// signal is blocked in this thread, the write fails with EFBIG instead. A SIGXFSZ that our
// writes raised is discarded afterwards; one that was already pending is left alone.
class FileSizeSignalGuard {
 public:
  FileSizeSignalGuard() {
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_oldMask);
    m_wasPending = IsPending();
  }
  ~FileSizeSignalGuard() {
    if (!m_wasPending && IsPending()) {
      struct timespec noWait = {0, 0};
      sigtimedwait(&m_signal, nullptr, &noWait);
    }
    pthread_sigmask(SIG_SETMASK, &m_oldMask, nullptr);
  }
  FileSizeSignalGuard(const FileSizeSignalGuard&) = delete;
  FileSizeSignalGuard& operator=(const FileSizeSignalGuard&) = delete;

 private:
  bool IsPending() const {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
  }

  sigset_t m_signal;
  sigset_t m_oldMask;
  bool m_wasPending = false;
};

// Writes all of `bytes`; the caller blocks SIGXFSZ around it (FileSizeSignalGuard).
Status WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t written = sys::Write(fd, bytes.data(), bytes.size());
    if (written < 0) return StatusFromErrno(errno);
    if (written == 0) return StatusFromErrno(ENOSPC);
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return Status::Ok();
}

// The start of every temporary name for `base`. It starts with a dot so that file listings
// hide it in the moment it exists.
std::string TemporaryPrefix(const std::string& base) { return "." + base + ".tolvex-"; }

// A name for the temporary file, unique among the threads and processes writing this folder.
std::string TemporaryName(const std::string& base) {
  static std::atomic<unsigned> counter{0};
  char suffix[64];
  std::snprintf(suffix, sizeof suffix, "%ld-%u", static_cast<long>(getpid()),
                counter.fetch_add(1, std::memory_order_relaxed));
  return TemporaryPrefix(base) + suffix;
}

// Whether `name` is a temporary file of `base`: one of ours, or one named as the renderer
// (".<base>.tmp<pid>-<counter>-<random>") and the tool (".<base>.out-XXXXXX") named theirs
// before they wrote through this replace.
bool IsTemporaryOf(const char* name, const std::string& base) {
  const std::string ours = TemporaryPrefix(base);
  if (std::strncmp(name, ours.c_str(), ours.size()) == 0) return true;
  const std::string dotted = "." + base;
  if (std::strncmp(name, dotted.c_str(), dotted.size()) != 0) return false;
  const char* rest = name + dotted.size();
  if (std::strncmp(rest, ".out-", 5) == 0) return std::strlen(rest + 5) == 6;
  if (std::strncmp(rest, ".tmp", 4) != 0) return false;
  int numbers = 0;
  for (const char* at = rest + 4; *at != '\0'; ++numbers) {
    if (*at < '0' || *at > '9') return false;
    while (*at >= '0' && *at <= '9') ++at;
    if (*at == '-') ++at;
  }
  return numbers == 3;
}

// Removes the temporary files of `base` that a writer killed between naming its file and the
// rename left behind. A temporary name exists only while its writer holds the FolderLock,
// which our caller holds now, so any such file found here is stale.
void RemoveStaleTemporaries(int folderFd, const std::string& base) {
  // Listed with getdents64 into a buffer on the stack: opendir would allocate a buffer larger
  // than most templates on every write.
  const int listFd = ::openat(folderFd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (listFd < 0) return;
  alignas(8) char buffer[4096];
  for (;;) {
    const ssize_t got = ::getdents64(listFd, buffer, sizeof buffer);
    if (got <= 0) break;
    for (ssize_t at = 0; at < got;) {
      const auto* entry = reinterpret_cast<const struct dirent64*>(buffer + at);
      if (IsTemporaryOf(entry->d_name, base)) ::unlinkat(folderFd, entry->d_name, 0);
      at += entry->d_reclen;
    }
  }
  ::close(listFd);
}

// An open file being prepared in the target's folder. Unnamed (O_TMPFILE) where the file
// system allows, so that a process killed while writing leaves nothing behind; otherwise a
// hidden name, removed again on every failure.
class PendingFile {
 public:
  PendingFile(int folderFd, std::string folder, std::string base)
      : m_folderFd(folderFd), m_folder(std::move(folder)), m_base(std::move(base)) {}
  ~PendingFile() {
    sys::CloseQuietly(m_fd);
    if (!m_name.empty()) ::unlinkat(m_folderFd, m_name.c_str(), 0);
  }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  int fd() const { return m_fd; }

  Status Create() {
    m_fd = sys::OpenAt(m_folderFd, ".", O_TMPFILE | O_WRONLY, 0666);
    if (m_fd >= 0) return Status::Ok();
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return StatusFromErrno(errno);
    for (int attempt = 0; attempt < 100; ++attempt) {
      std::string name = TemporaryName(m_base);
      m_fd = sys::OpenAt(m_folderFd, name.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0666);
      if (m_fd >= 0) {
        m_name = name;
        return Status::Ok();
      }
      if (errno != EEXIST) return StatusFromErrno(errno);
    }
    return StatusFromErrno(EEXIST);
  }

  // Gives an unnamed file its hidden name, just before the rename.
  Status Name() {
    if (!m_name.empty()) return Status::Ok();
    char procPath[64];
    std::snprintf(procPath, sizeof procPath, "/proc/self/fd/%d", m_fd);
    for (int attempt = 0; attempt < 100; ++attempt) {
      std::string name = TemporaryName(m_base);
      if (::linkat(AT_FDCWD, procPath, m_folderFd, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
        m_name = name;
        return Status::Ok();
      }
      if (errno != EEXIST) return StatusFromErrno(errno);
    }
    return StatusFromErrno(EEXIST);
  }

  // Renames the file over `target`; afterwards it is no longer ours to remove.
  Status RenameOver(const std::string& target) {
    std::string from = m_folder + "/" + m_name;
    if (sys::Rename(from.c_str(), target.c_str()) != 0) return StatusFromErrno(errno);
    m_name.clear();
    return Status::Ok();
  }

 private:
  int m_folderFd;
  std::string m_folder;
  std::string m_base;
  int m_fd = -1;
  std::string m_name;  // set while a named temporary file exists
};

// Carries over the owner, group and mode of the file being replaced, or applies `mode`.
void ApplyAttributes(int fd, const struct stat* old, const mode_t* mode) {
  if (old) {
    // Changing the owner clears set-id bits, so the mode is set after it. Failures only
    // mean that we may not give the file away; the content is what matters.
    if (::fchown(fd, old->st_uid, old->st_gid) != 0) {
      if (::fchown(fd, static_cast<uid_t>(-1), old->st_gid) != 0) {
        // The group stays ours.
      }
    }
    ::fchmod(fd, old->st_mode & 07777);
  }
  if (mode) ::fchmod(fd, *mode & 07777);
}

class FolderHandle {
 public:
  explicit FolderHandle(const std::string& folder)
      : m_fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
  ~FolderHandle() { sys::CloseQuietly(m_fd); }
  FolderHandle(const FolderHandle&) = delete;
  FolderHandle& operator=(const FolderHandle&) = delete;
  int fd() const { return m_fd; }

 private:
  int m_fd;
};

}  // namespace

Status ReplaceAtomically(const std::string& target, std::string_view bytes, const mode_t* mode) {
  return ReplaceAtomically(
      target, [bytes](const ByteSink& write) { return write(bytes); }, mode);
}

Status ReplaceAtomically(const std::string& target, const os::ContentSource& content,
                         const mode_t* mode) {
  struct stat old;
  bool existed = ::stat(target.c_str(), &old) == 0 && S_ISREG(old.st_mode);

  std::string folder = FolderOf(target);
  FolderHandle folderHandle(folder);
  if (folderHandle.fd() < 0) return StatusFromErrno(errno);

  const std::string base = BaseNameOf(target);
  RemoveStaleTemporaries(folderHandle.fd(), base);
  PendingFile pending(folderHandle.fd(), folder, base);
  Status status = pending.Create();
  if (!status.ok()) return status;
  ApplyAttributes(pending.fd(), existed ? &old : nullptr, mode);

  {
    // Blocked once for all the pieces rather than around each: four system calls a piece.
    FileSizeSignalGuard guard;
    status = content([&](std::string_view piece) { return WriteAll(pending.fd(), piece); });
  }
  if (!status.ok()) return status;
  if (sys::Fsync(pending.fd()) != 0) return StatusFromErrno(errno);
  status = pending.Name();
  if (!status.ok()) return status;
  status = pending.RenameOver(target);
  if (!status.ok()) return status;
  // Makes the rename itself durable. The new content is in place whatever this reports.
  ::fsync(folderHandle.fd());
  return Status::Ok();
}

}  // namespace tolvex::platform::posix
