// The folder lock probed on POSIX: a new open file description of the folder conflicts with
// the holder's as another process's would.
#include "platform/LockProbe.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

namespace tolvex::test {

bool FolderLockIsFree(const std::string& file) {
  const std::string folder = std::filesystem::path(file).parent_path().string();
  const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool free = flock(fd, LOCK_EX | LOCK_NB) == 0;
  close(fd);
  return free;
}

}  // namespace tolvex::test
