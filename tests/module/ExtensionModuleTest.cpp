// The framework's list of extension modules. The library's objects are linked into this binary,
// so its load hook has run before main.
#include "module/ExtensionModule.h"

#include <gtest/gtest.h>

namespace tolvex::module {
extern AFX_EXTENSION_MODULE g_LibraryModule;

namespace {

TEST(ExtensionModule, LibraryIsRegisteredOnceWhenLoaded) {
  ASSERT_NE(g_LibraryModule.hModule, nullptr);
  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);
  EXPECT_EQ(RegisteredEntries(), 1u);
}

}  // namespace
}  // namespace tolvex::module
