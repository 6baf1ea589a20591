// The POSIX implementation of the seam's looks at a path before it is used: what it names,
// whether this process may read or write it, a private temporary folder, and the standard
// streams. Stateless; safe from any thread.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/Os.h"
#include "platform/posix/PosixStatus.h"
#include "platform/posix/Syscalls.h"

namespace tolvex::platform::os {
namespace {

PathKind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return PathKind::kFile;
  if (S_ISDIR(mode)) return PathKind::kFolder;
  if (S_ISFIFO(mode)) return PathKind::kPipe;
  if (S_ISCHR(mode) || S_ISBLK(mode)) return PathKind::kDevice;
  return PathKind::kOther;
}

}  // namespace

Status LookAt(const std::string& path, PathInfo* info, bool followLinks) {
  struct stat st {};
  if ((followLinks ? ::stat(path.c_str(), &st) : ::lstat(path.c_str(), &st)) != 0)
    return StatusFromErrno(errno);
  info->kind = KindOf(st.st_mode);
  info->size = static_cast<uint64_t>(st.st_size);
  info->modifiedSeconds = static_cast<int64_t>(st.st_mtime);
  info->readOnly = (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
  info->ownedByCaller = st.st_uid == ::geteuid();
  return Status::Ok();
}

Status CheckReadable(const std::string& path) {
  // O_NONBLOCK: a FIFO opens at once instead of waiting for a writer, and is then refused.
  const int fd = sys::Open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (fd < 0) return StatusFromErrno(errno);
  struct stat st {};
  int error = ::fstat(fd, &st) != 0 ? errno : 0;
  if (error == 0 && S_ISDIR(st.st_mode)) error = EISDIR;
  if (error == 0 && !S_ISREG(st.st_mode)) error = EINVAL;
  sys::CloseQuietly(fd);
  return StatusFromErrno(error);
}

Status CheckWritable(const std::string& path) {
  return StatusFromErrno(::access(path.c_str(), W_OK) == 0 ? 0 : errno);
}

Status CheckFolderWritable(const std::string& folder) {
  return StatusFromErrno(::access(folder.c_str(), W_OK | X_OK) == 0 ? 0 : errno);
}

Status MakePrivateFolder(const std::string& prefix, std::string* folder) {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = (tmp && *tmp == '/') ? tmp : "/tmp";
  pattern += "/" + prefix + "XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  // mkdtemp makes the folder with mode 0700.
  if (!::mkdtemp(name.data())) return StatusFromErrno(errno);
  *folder = name.data();
  return Status::Ok();
}

bool StandardOutputIsTerminal() { return ::isatty(STDOUT_FILENO) == 1; }

// POSIX streams never translate line ends.
void UseBinaryStandardStreams() {}

}  // namespace tolvex::platform::os
