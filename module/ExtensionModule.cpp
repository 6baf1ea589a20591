// The framework's list of extension modules and the calls that register and unregister them.
#include "module/ExtensionModule.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

namespace {

struct ModuleList {
  std::mutex lock;
  std::vector<CDynLinkLibrary*> entries;
};

// Constructed on first use and never destroyed, so that it outlives every unload hook. It
// lives in static storage rather than on the heap, and gives its buffer back when it empties:
// once the unload hook has removed the library's entry, unloading the library leaves nothing
// allocated behind (a heap list would be lost with each dlclose).
ModuleList& Modules() {
  alignas(ModuleList) static unsigned char storage[sizeof(ModuleList)];
  static ModuleList* list = new (storage) ModuleList;
  return *list;
}

}  // namespace

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE hModule) {
  if (hModule == nullptr) return FALSE;
  state.hModule = hModule;
  state.hResource = hModule;
  state.bInitialized = TRUE;
  return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL bAll) {
  std::vector<CDynLinkLibrary*> leaving;
  {
    ModuleList& list = Modules();
    std::lock_guard<std::mutex> guard(list.lock);
    auto goes = [&](const CDynLinkLibrary* entry) {
      return bAll || entry->m_hModule == state.hModule;
    };
    std::copy_if(list.entries.begin(), list.entries.end(), std::back_inserter(leaving), goes);
  }
  for (CDynLinkLibrary* entry : leaving) delete entry;  // each removes itself from the list
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL bSystem)
    : m_hModule(state.hModule), m_hResource(state.hResource), m_bSystem(bSystem) {
  ModuleList& list = Modules();
  std::lock_guard<std::mutex> guard(list.lock);
  list.entries.push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
  ModuleList& list = Modules();
  std::lock_guard<std::mutex> guard(list.lock);
  list.entries.erase(std::remove(list.entries.begin(), list.entries.end(), this),
                     list.entries.end());
  if (list.entries.empty()) std::vector<CDynLinkLibrary*>().swap(list.entries);
}

namespace tolvex::module {

std::size_t RegisteredEntries(HMODULE hModule) {
  ModuleList& list = Modules();
  std::lock_guard<std::mutex> guard(list.lock);
  return static_cast<std::size_t>(
      std::count_if(list.entries.begin(), list.entries.end(), [&](const CDynLinkLibrary* entry) {
        return hModule == nullptr || entry->m_hModule == hModule;
      }));
}

}  // namespace tolvex::module
