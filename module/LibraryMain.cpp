// The library's entry point: registers libTolvexMenuTemplate as an extension module of the
// framework when it is loaded and unregisters it when it is unloaded. On ELF systems the
// loader runs these hooks as the library's constructors and destructors; they run once, on
// the loading thread.
#include "module/ExtensionModule.h"

#include <new>

namespace tolvex::module {

// This library's module record.
AFX_EXTENSION_MODULE g_LibraryModule;

namespace {

enum class Reason { ProcessAttach, ProcessDetach, ThreadAttach, ThreadDetach };

// Stands for the module's instance handle: an address inside this library.
const char kModuleAnchor = 0;

BOOL LibraryMain(HINSTANCE instance, Reason reason) {
  switch (reason) {
    case Reason::ProcessAttach:
      if (!AfxInitExtensionModule(g_LibraryModule, instance)) return FALSE;
      // The entry enters the framework's list; it is deleted by AfxTermExtensionModule.
      // Loading goes on even when it cannot be allocated.
      new (std::nothrow) CDynLinkLibrary(g_LibraryModule, FALSE);
      return TRUE;
    case Reason::ProcessDetach:
      AfxTermExtensionModule(g_LibraryModule, FALSE);
      return TRUE;
    case Reason::ThreadAttach:
    case Reason::ThreadDetach:
      return TRUE;
  }
  return TRUE;
}

// An ELF constructor cannot refuse the load: a failed attach leaves the module unregistered.
__attribute__((constructor)) void OnLoad() {
  LibraryMain(reinterpret_cast<HINSTANCE>(const_cast<char*>(&kModuleAnchor)), Reason::ProcessAttach);
}

__attribute__((destructor)) void OnUnload() {
  LibraryMain(reinterpret_cast<HINSTANCE>(const_cast<char*>(&kModuleAnchor)), Reason::ProcessDetach);
}

}  // namespace
}  // namespace tolvex::module
