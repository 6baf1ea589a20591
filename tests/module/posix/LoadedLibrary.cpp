// Loading a library with dlopen (see LoadedLibrary.h).
#include "module/LoadedLibrary.h"

#include <dlfcn.h>

namespace tolvex::test {

void* LoadLibraryFile(const std::string& path, std::string* error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) *error = dlerror();
  return library;
}

void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }

bool AddressInLibrary(const void* address, void*, const std::string& path) {
  Dl_info info{};
  return dladdr(address, &info) && info.dli_fname == path;
}

bool UnloadLibrary(void* library) { return dlclose(library) == 0; }

bool IsLibraryLoaded(const std::string& path) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  return library != nullptr && dlclose(library) == 0;
}

}  // namespace tolvex::test
