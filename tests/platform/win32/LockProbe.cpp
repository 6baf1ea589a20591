// The folder lock probed on Windows: a new handle of the folder's lock file conflicts with the
// holder's as another process's would.
#include "platform/LockProbe.h"

#include <windows.h>

#include "platform/win32/Win32Lock.h"

namespace tolvex::test {

bool FolderLockIsFree(const std::string& file) {
  std::wstring lockFile;
  if (!platform::win32::LockFileOf(file, &lockFile).ok()) return false;
  HANDLE handle = CreateFileW(lockFile.c_str(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  OVERLAPPED at{};
  const bool free = LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &at);
  if (free) UnlockFileEx(handle, 0, 1, 0, &at);
  CloseHandle(handle);
  return free;
}

}  // namespace tolvex::test
