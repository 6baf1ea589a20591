// The locked, checked replace of a whole file (see FileReplace.h).
#include "platform/FileReplace.h"

#include <cerrno>

#include "platform/Os.h"
#include "platform/ProfileEdit.h"

namespace tolvex::platform {

Status LockForReplace(const std::string& path, os::FolderLock* lock, std::string* target,
                      bool* exists) {
  Status status = os::ResolveLinks(path, target);
  if (!status.ok()) return status;
  // Re-entrant within the thread: a thread inside an edit of a file in this folder holds the
  // lock already and goes on at once.
  status = lock->Acquire(*target);
  if (!status.ok()) return status;
  // Checked under the lock, before anything is read, so that a read-only file fails even when
  // nothing would change.
  return os::CheckReplaceable(*target, exists);
}

Status ReplaceWholeFile(const std::string& path, std::string_view bytes) {
  if (path.empty()) return Status::Error(StatusCode::kInvalidArgument, EINVAL);
  // The edit lookup takes profile paths, where a bare name means the profile folder.
  const std::string asProfilePath = path.find('/') == std::string::npos ? "./" + path : path;
  if (StagedFileFor(asProfilePath.c_str()) != nullptr)
    return Status::Error(StatusCode::kAccessDenied, EACCES);
  os::FolderLock lock;
  std::string target;
  bool exists = false;
  const Status status = LockForReplace(path, &lock, &target, &exists);
  if (!status.ok()) return status;
  return os::ReplaceFile(target, bytes);
}

}  // namespace tolvex::platform
