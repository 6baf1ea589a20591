// The built libTolvexMenuTemplate as an application loads it (this binary does not link it):
// dlopen and dlclose run its hooks, and it exports the public classes and none of its insides.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>

namespace {

const char kLibrary[] = TOLVEX_LIBRARY_FILE;

bool IsLoaded() {
  void* handle = dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD);
  return handle != nullptr && dlclose(handle) == 0;
}

TEST(LibraryLoad, LoadsExportsOnlyThePublicApiAndUnloads) {
  const char* const exported[] = {
      "_ZN13CMenuTemplateC1E7CString",                 // CMenuTemplate::CMenuTemplate(CString)
      "_ZN13CMenuTemplate14SetBtnPositionEj7tagRECT",  // CMenuTemplate::SetBtnPosition
      "_ZN13CMenuTemplate11ResizeImageE7CStringS0_jj", // CMenuTemplate::ResizeImage
      "_ZN10CMenuTitle11SetFontBoldEi",                // CMenuTitle::SetFontBold
      "_ZN11CMenuButton8GetTitleEP10CMenuTitle",       // CMenuButton::GetTitle
      "_ZN7CString6FormatEPKcz",                       // CString::Format
  };
  const char* const internal[] = {
      "_ZN6tolvex6module17RegisteredEntriesEPv",  // tolvex::module::RegisteredEntries
      "_ZN6tolvex6module15g_LibraryModuleE",      // tolvex::module::g_LibraryModule
      "_Z22AfxInitExtensionModuleR20AFX_EXTENSION_MODULEPv",
      "_Z22AfxTermExtensionModuleR20AFX_EXTENSION_MODULEi",
  };
  ASSERT_FALSE(IsLoaded());
  for (int round = 0; round < 2; ++round) {  // it loads again after unloading
    void* handle = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    for (const char* name : exported) {
      Dl_info info{};
      void* symbol = dlsym(handle, name);
      EXPECT_TRUE(symbol && dladdr(symbol, &info) && info.dli_fname == std::string(kLibrary))
          << name << " is not exported by the library";
    }
    for (const char* name : internal) EXPECT_EQ(dlsym(handle, name), nullptr) << name;
    EXPECT_EQ(dlclose(handle), 0) << dlerror();
    EXPECT_FALSE(IsLoaded()) << "round " << round;
  }
}

}  // namespace
