// Loading a library with LoadLibrary (see LoadedLibrary.h).
#include "module/LoadedLibrary.h"

#include <windows.h>

namespace tolvex::test {

void* LoadLibraryFile(const std::string& path, std::string* error) {
  HMODULE library = LoadLibraryA(path.c_str());
  if (!library) *error = "LoadLibrary error " + std::to_string(GetLastError());
  return reinterpret_cast<void*>(library);
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool UnloadLibrary(void* library) { return FreeLibrary(static_cast<HMODULE>(library)) != 0; }

}  // namespace tolvex::test
