// The application framework's extension-module registration, as a small shim of our own: the
// module record, AfxInitExtensionModule, CDynLinkLibrary (an entry in the framework's list of
// extension modules) and AfxTermExtensionModule. The list is process-wide and guarded by a
// mutex; it is touched only while libraries are loaded and unloaded.
#ifndef TOLVEX_MODULE_EXTENSIONMODULE_H
#define TOLVEX_MODULE_EXTENSIONMODULE_H

#include <tolvex/WinTypes.h>

#include <cstddef>

// What the framework knows of one extension module.
struct AFX_EXTENSION_MODULE {
  BOOL bInitialized = FALSE;
  HMODULE hModule = nullptr;
  HMODULE hResource = nullptr;
};

// Records the module's handle in `state`. Fails (FALSE) only for a null handle.
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE hModule);

// Unregisters the module of `state`: removes and deletes its CDynLinkLibrary entries. With
// `bAll`, every registered module goes.
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL bAll = FALSE);

// One entry of the framework's list of extension modules; constructing it registers the
// module, deleting it unregisters it.
class CDynLinkLibrary {
 public:
  explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL bSystem = FALSE);
  ~CDynLinkLibrary();
  CDynLinkLibrary(const CDynLinkLibrary&) = delete;
  CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

  HMODULE m_hModule;
  HMODULE m_hResource;
  BOOL m_bSystem;
};

namespace tolvex::module {
// How many entries the framework's list holds for `hModule` (all modules for null).
std::size_t RegisteredEntries(HMODULE hModule = nullptr);
}  // namespace tolvex::module

#endif  // TOLVEX_MODULE_EXTENSIONMODULE_H
