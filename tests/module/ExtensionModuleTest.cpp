// The framework's list of extension modules. The library's objects are linked into this binary,
// so its load hook has run before main.
#include "module/ExtensionModule.h"

#include <gtest/gtest.h>

namespace tolvex::module {
extern AFX_EXTENSION_MODULE g_LibraryModule;

namespace {

// A module handle that stands for the module of `anchor`, an address inside it.
HMODULE Handle(char* anchor) { return reinterpret_cast<HMODULE>(anchor); }

TEST(ExtensionModule, LibraryIsRegisteredOnceWhenLoaded) {
  ASSERT_NE(g_LibraryModule.hModule, nullptr);
  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);
  EXPECT_EQ(RegisteredEntries(), 1u);
}

TEST(ExtensionModule, TermRemovesOnlyItsOwnModulesEntries) {
  AFX_EXTENSION_MODULE a, b;
  EXPECT_FALSE(AfxInitExtensionModule(a, nullptr));
  char anchorA = 0, anchorB = 0;
  ASSERT_TRUE(AfxInitExtensionModule(a, Handle(&anchorA)));
  ASSERT_TRUE(AfxInitExtensionModule(b, Handle(&anchorB)));
  new CDynLinkLibrary(a);
  new CDynLinkLibrary(a);
  new CDynLinkLibrary(b);
  ASSERT_EQ(RegisteredEntries(Handle(&anchorA)), 2u);

  AfxTermExtensionModule(a);
  EXPECT_EQ(RegisteredEntries(Handle(&anchorA)), 0u);
  EXPECT_EQ(RegisteredEntries(Handle(&anchorB)), 1u);
  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);

  // With bAll every module goes, the library's own entry too: put it back for the unload hook.
  AfxTermExtensionModule(a, TRUE);
  EXPECT_EQ(RegisteredEntries(), 0u);
  new CDynLinkLibrary(g_LibraryModule);
}

}  // namespace
}  // namespace tolvex::module
