// Writing an output picture through the file primitives of the profile layer: link
// resolution, the folder lock, the checks before a replace, and the atomic replace itself.
#include "renderer/AtomicFile.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/Os.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

Status Refuse(const std::string& what, const platform::Status& status) {
  const int error = status.sysError();
  if (error != 0) return FailErrno(Status::kOutputUnwritable, what, error);
  return Fail(Status::kOutputUnwritable, what + ": " + platform::StatusText(status));
}

}  // namespace

Status ReplaceFile(const std::string& path, const std::string& bytes) {
  if (path.empty()) return Fail(Status::kOutputUnwritable, "no output named");
  const std::string what = "cannot write output " + path;
  std::string target;
  if (const auto s = platform::os::ResolveLinks(path, &target); !s.ok()) return Refuse(what, s);

  platform::os::FolderLock lock;
  if (const auto s = lock.Acquire(target); !s.ok()) return Refuse(what, s);
  struct stat info {};
  if (stat(target.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return Fail(Status::kOutputUnwritable, what + ": it is a folder");
    if (!S_ISREG(info.st_mode)) {
      return Fail(Status::kOutputUnwritable, what + ": not a regular file");
    }
    if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
      return Fail(Status::kOutputUnwritable, what + ": the file is read-only");
    }
  }
  bool exists = false;
  if (const auto s = platform::os::CheckReplaceable(target, &exists); !s.ok()) {
    return Refuse(what, s);
  }
  if (const auto s = platform::os::ReplaceFile(target, bytes); !s.ok()) return Refuse(what, s);
  return Status::kOk;
}

}  // namespace tolvex::render
