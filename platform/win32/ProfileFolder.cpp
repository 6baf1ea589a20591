// The profile folder on Windows: the Windows folder, where the system's own profile functions
// keep a file given by a bare name, unless $TOLVEX_PROFILE_DIR names another.
// Stateless; reads the environment, as every caller of getenv does.
#include "platform/ProfileFolder.h"

#include <windows.h>

#include <cstdlib>

namespace tolvex::platform {

std::string ProfileFolder() {
  const char* own = std::getenv("TOLVEX_PROFILE_DIR");
  if (own && *own) return own;
  char folder[MAX_PATH + 1];
  const UINT length = GetWindowsDirectoryA(folder, sizeof folder);
  if (length == 0 || length > MAX_PATH) return "C:\\Windows";
  return std::string(folder, length);
}

}  // namespace tolvex::platform
