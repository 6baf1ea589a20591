// Where the Windows FolderLock keeps the lock file of a folder; for the lock itself and for
// tests that ask whether a folder's lock is free.
#ifndef TOLVEX_PLATFORM_WIN32_WIN32LOCK_H
#define TOLVEX_PLATFORM_WIN32_WIN32LOCK_H

#include <string>

#include "platform/Status.h"

namespace tolvex::platform::win32 {

// The lock file of the folder that holds `file`, named after the folder's identity.
Status LockFileOf(const std::string& file, std::wstring* path);

}  // namespace tolvex::platform::win32

#endif  // TOLVEX_PLATFORM_WIN32_WIN32LOCK_H
