// Writing an output picture through the file primitives of the profile layer: link
// resolution, the folder lock, the checks before a replace, and the atomic replace itself.
#include "renderer/AtomicFile.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

Status Refuse(const std::string& what, const platform::Status& status) {
  const int error = status.sysError();
  if (error != 0) return FailErrno(Status::kOutputUnwritable, what, error);
  return Fail(Status::kOutputUnwritable, what + ": " + platform::StatusText(status));
}

// Whether `name` is a temporary of `base` as earlier versions of the renderer named them:
// ".<base>.tmp<pid>-<counter>-<random>". A writer killed by SIGXFSZ left these behind.
bool IsEarlierTemporary(const char* name, const std::string& base) {
  const std::string prefix = "." + base + ".tmp";
  if (std::strncmp(name, prefix.c_str(), prefix.size()) != 0) return false;
  int numbers = 0;
  for (const char* at = name + prefix.size(); *at != '\0'; ++numbers) {
    if (*at < '0' || *at > '9') return false;
    while (*at >= '0' && *at <= '9') ++at;
    if (*at == '-') ++at;
  }
  return numbers == 3;
}

// Removes such leftovers beside `target`. The caller holds the folder's writer lock; the
// current writers name their temporaries otherwise and clean up their own (see PosixReplace).
void RemoveEarlierTemporaries(const std::string& target) {
  const std::string folder = platform::posix::FolderOf(target);
  const std::string base = platform::posix::BaseNameOf(target);
  DIR* listing = opendir(folder.c_str());
  if (listing == nullptr) return;
  while (const struct dirent* entry = readdir(listing)) {
    if (IsEarlierTemporary(entry->d_name, base)) unlink((folder + "/" + entry->d_name).c_str());
  }
  closedir(listing);
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
  RemoveEarlierTemporaries(target);
  if (const auto s = platform::os::ReplaceFile(target, bytes); !s.ok()) return Refuse(what, s);
  return Status::kOk;
}

}  // namespace tolvex::render
