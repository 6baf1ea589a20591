// Loading a library with LoadLibrary (see LoadedLibrary.h). A loaded DLL is known by its file
// name alone, whatever path it was loaded by.
#include "module/LoadedLibrary.h"

#include <windows.h>

namespace tolvex::test {
namespace {

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace

void* LoadLibraryFile(const std::string& path, std::string* error) {
  HMODULE library = LoadLibraryA(path.c_str());
  if (!library) *error = "LoadLibrary error " + std::to_string(GetLastError());
  return reinterpret_cast<void*>(library);
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool AddressInLibrary(const void* address, void* library, const std::string&) {
  HMODULE holder = nullptr;
  return GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<LPCSTR>(address), &holder) &&
         holder == static_cast<HMODULE>(library);
}

bool UnloadLibrary(void* library) { return FreeLibrary(static_cast<HMODULE>(library)) != 0; }

bool IsLibraryLoaded(const std::string& path) {
  return GetModuleHandleA(FileName(path).c_str()) != nullptr;
}

}  // namespace tolvex::test
