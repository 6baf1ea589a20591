// The framework's list of extension modules: the library's own registration at load, and the
// calls that register and unregister modules. The library's objects are linked into this
// binary, so its load hook has run before main.
#include "module/ExtensionModule.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace tolvex::module {
extern AFX_EXTENSION_MODULE g_LibraryModule;
}

namespace tolvex::test {
namespace {

using tolvex::module::g_LibraryModule;
using tolvex::module::RegisteredEntries;

const void* ImageBase(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

TEST(ExtensionModule, LibraryIsRegisteredOnceWhenLoaded) {
  EXPECT_TRUE(g_LibraryModule.bInitialized);
  ASSERT_NE(g_LibraryModule.hModule, nullptr);
  EXPECT_EQ(g_LibraryModule.hResource, g_LibraryModule.hModule);
  // The handle stands for the library: it lies inside the library's own image.
  EXPECT_EQ(ImageBase(g_LibraryModule.hModule),
            ImageBase(reinterpret_cast<const void*>(&RegisteredEntries)));

  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);
  EXPECT_EQ(RegisteredEntries(), 1u);
}

TEST(ExtensionModule, InitRecordsTheHandleAndRefusesNull) {
  AFX_EXTENSION_MODULE refused;
  EXPECT_FALSE(AfxInitExtensionModule(refused, nullptr));
  EXPECT_FALSE(refused.bInitialized);

  char anchor = 0;
  AFX_EXTENSION_MODULE state;
  EXPECT_TRUE(AfxInitExtensionModule(state, &anchor));
  EXPECT_TRUE(state.bInitialized);
  EXPECT_EQ(state.hModule, &anchor);
  EXPECT_EQ(state.hResource, &anchor);
  EXPECT_EQ(RegisteredEntries(&anchor), 0u);  // initialising registers nothing by itself
}

TEST(ExtensionModule, DynLinkLibraryIsRegisteredForItsLifetime) {
  char anchor = 0;
  AFX_EXTENSION_MODULE state;
  ASSERT_TRUE(AfxInitExtensionModule(state, &anchor));
  {
    CDynLinkLibrary entry(state, TRUE);
    EXPECT_EQ(entry.m_hModule, &anchor);
    EXPECT_EQ(entry.m_hResource, &anchor);
    EXPECT_EQ(entry.m_bSystem, TRUE);
    EXPECT_EQ(RegisteredEntries(&anchor), 1u);
    EXPECT_EQ(RegisteredEntries(), 2u);
  }
  EXPECT_EQ(RegisteredEntries(&anchor), 0u);
  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);
}

TEST(ExtensionModule, TermRemovesOnlyItsOwnModulesEntries) {
  char anchorA = 0, anchorB = 0;
  AFX_EXTENSION_MODULE a, b;
  ASSERT_TRUE(AfxInitExtensionModule(a, &anchorA));
  ASSERT_TRUE(AfxInitExtensionModule(b, &anchorB));
  new CDynLinkLibrary(a);
  new CDynLinkLibrary(a);
  new CDynLinkLibrary(b);
  ASSERT_EQ(RegisteredEntries(&anchorA), 2u);

  AfxTermExtensionModule(a);
  EXPECT_EQ(RegisteredEntries(&anchorA), 0u);
  EXPECT_EQ(RegisteredEntries(&anchorB), 1u);
  EXPECT_EQ(RegisteredEntries(g_LibraryModule.hModule), 1u);

  AfxTermExtensionModule(a);  // nothing left of a: a second call changes nothing
  EXPECT_EQ(RegisteredEntries(), 2u);

  AfxTermExtensionModule(b);
  EXPECT_EQ(RegisteredEntries(&anchorB), 0u);
  EXPECT_EQ(RegisteredEntries(), 1u);
}

TEST(ExtensionModule, TermForAllRemovesEveryModule) {
  char anchorA = 0, anchorB = 0;
  AFX_EXTENSION_MODULE a, b;
  ASSERT_TRUE(AfxInitExtensionModule(a, &anchorA));
  ASSERT_TRUE(AfxInitExtensionModule(b, &anchorB));
  new CDynLinkLibrary(a);
  new CDynLinkLibrary(b);

  AfxTermExtensionModule(a, TRUE);
  EXPECT_EQ(RegisteredEntries(), 0u);

  // Put the library's own entry back, as loading made it, for the unload hook.
  new CDynLinkLibrary(g_LibraryModule, FALSE);
  EXPECT_EQ(RegisteredEntries(), 1u);
}

}  // namespace
}  // namespace tolvex::test
