// Loading a shared library at run time as an application does, per system (posix/: dlopen,
// win32/: LoadLibrary): for the test that loads the built libTolvexMenuTemplate.
#ifndef TOLVEX_TESTS_MODULE_LOADEDLIBRARY_H
#define TOLVEX_TESTS_MODULE_LOADEDLIBRARY_H

#include <string>

namespace tolvex::test {

// Loads the library file `path` with every symbol bound at once; nullptr, with the system's
// reason in `error`, when it cannot.
void* LoadLibraryFile(const std::string& path, std::string* error);
// The address `name` has in `library`, or nullptr when the library does not export it.
void* FindSymbol(void* library, const char* name);
// Unloads `library`; false when the system refuses.
bool UnloadLibrary(void* library);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_MODULE_LOADEDLIBRARY_H
