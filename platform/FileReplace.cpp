// The locked, checked replace of a whole file (see FileReplace.h).
#include "platform/FileReplace.h"

#include <cerrno>

#include "platform/Os.h"
#include "platform/ProfileEdit.h"

namespace tolvex::platform {

Status ReplaceWholeFile(const std::string& path, std::string_view bytes) {
  if (path.empty()) return Status::Error(StatusCode::kInvalidArgument, EINVAL);
  std::string target;
  Status status = os::ResolveLinks(path, &target);
  if (!status.ok()) return status;
  // The edit lookup takes profile paths, where a bare name means the profile folder.
  const std::string asProfilePath =
      target.find('/') == std::string::npos ? "./" + target : target;
  if (StagedFileFor(asProfilePath.c_str()) != nullptr)
    return Status::Error(StatusCode::kAccessDenied, EACCES);
  // Re-entrant within the thread: a thread inside an edit of a file in this folder holds the
  // lock already and goes on at once.
  os::FolderLock lock;
  status = lock.Acquire(target);
  if (!status.ok()) return status;
  bool exists = false;
  status = os::CheckReplaceable(target, &exists);
  if (!status.ok()) return status;
  return os::ReplaceFile(target, bytes);
}

}  // namespace tolvex::platform
