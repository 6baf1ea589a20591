// The built libTolvexMenuTemplate as an application loads it: dlopen and dlclose run its load
// and unload hooks, and its dynamic symbol table holds the public classes and nothing of the
// library's insides. This binary does not link the library.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>

#ifndef TOLVEX_LIBRARY_FILE
#  error "TOLVEX_LIBRARY_FILE must name the built libTolvexMenuTemplate"
#endif

namespace tolvex::test {
namespace {

const char kLibrary[] = TOLVEX_LIBRARY_FILE;

std::string DefiningFile(const void* address) {
  Dl_info info{};
  if (!dladdr(address, &info) || info.dli_fname == nullptr) return "<unknown>";
  return info.dli_fname;
}

bool IsLoaded() {
  void* handle = dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) return false;
  dlclose(handle);
  return true;
}

TEST(LibraryLoad, LoadsAndUnloadsCleanly) {
  ASSERT_FALSE(IsLoaded());
  for (int round = 0; round < 2; ++round) {
    void* handle = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_TRUE(IsLoaded());
    EXPECT_EQ(dlclose(handle), 0) << dlerror();
    EXPECT_FALSE(IsLoaded()) << "round " << round;
  }
}

TEST(LibraryLoad, ExportsThePublicClassesAndNothingInternal) {
  void* handle = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();

  const char* const exported[] = {
      "_ZN13CMenuTemplateC1Ev",                        // CMenuTemplate::CMenuTemplate()
      "_ZN13CMenuTemplateC1E7CString",                 // CMenuTemplate::CMenuTemplate(CString)
      "_ZN13CMenuTemplateaSERKS_",                     // CMenuTemplate::operator=
      "_ZN13CMenuTemplateD1Ev",                        // CMenuTemplate::~CMenuTemplate()
      "_ZN13CMenuTemplate14SetBtnPositionEj7tagRECT",  // CMenuTemplate::SetBtnPosition
      "_ZN13CMenuTemplate13CreateMenuBMPE7CString",    // CMenuTemplate::CreateMenuBMP(CString)
      "_ZN13CMenuTemplate11ResizeImageE7CStringS0_jj", // CMenuTemplate::ResizeImage
      "_ZN10CMenuTitle11SetFontBoldEi",                // CMenuTitle::SetFontBold
      "_ZN11CMenuButton8GetTitleEP10CMenuTitle",       // CMenuButton::GetTitle
      "_ZN7CString6FormatEPKcz",                       // CString::Format
  };
  for (const char* name : exported) {
    void* symbol = dlsym(handle, name);
    ASSERT_NE(symbol, nullptr) << name << " is not exported";
    EXPECT_EQ(DefiningFile(symbol), kLibrary) << name;
  }

  const char* const internal[] = {
      "_ZN6tolvex6module17RegisteredEntriesEPv",  // tolvex::module::RegisteredEntries
      "_ZN6tolvex6module15g_LibraryModuleE",      // tolvex::module::g_LibraryModule
      "_Z22AfxInitExtensionModuleR20AFX_EXTENSION_MODULEPv",
      "_Z22AfxTermExtensionModuleR20AFX_EXTENSION_MODULEi",
  };
  for (const char* name : internal) EXPECT_EQ(dlsym(handle, name), nullptr) << name;

  EXPECT_EQ(dlclose(handle), 0) << dlerror();
}

}  // namespace
}  // namespace tolvex::test
