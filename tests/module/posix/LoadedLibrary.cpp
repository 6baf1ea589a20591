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

bool UnloadLibrary(void* library) { return dlclose(library) == 0; }

}  // namespace tolvex::test
