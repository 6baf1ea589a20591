// The built libTolvexMenuTemplate as an application loads it (this binary does not link it):
// loading and unloading run its hooks, and it exports the public classes and none of its
// insides.
#include "module/LoadedLibrary.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvex::test {
namespace {

const char kLibrary[] = TOLVEX_LIBRARY_FILE;

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
  for (int round = 0; round < 2; ++round) {  // it loads again after unloading
    std::string error;
    void* library = LoadLibraryFile(kLibrary, &error);
    ASSERT_NE(library, nullptr) << error;
    for (const char* name : exported) EXPECT_NE(FindSymbol(library, name), nullptr) << name;
    for (const char* name : internal) EXPECT_EQ(FindSymbol(library, name), nullptr) << name;
    EXPECT_TRUE(UnloadLibrary(library)) << "round " << round;
  }
}

}  // namespace
}  // namespace tolvex::test
