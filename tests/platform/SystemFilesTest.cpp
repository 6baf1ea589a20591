// What every system does with its own kind of file (SystemFiles.h): a write keeps the marks of
// the file it replaces, and pipes and devices are refused without waiting. What only one system
// has is in its folder's SystemFilesTest.cpp.
#include "platform/SystemFiles.h"

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <string>

#include "support/TempDir.h"

namespace tolvex::test {
namespace {

TEST(AtomicReplace, KeepsTheMarksOfTheFileItReplaces) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  MarkToKeep(path);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  EXPECT_TRUE(StillMarked(path));
  EXPECT_EQ(ReadFile(path), "[s]\r\nk=2\r\n");
}

TEST(HostileFiles, PipesAndDevicesAreRefusedWithoutWaiting) {
  TempDir dir;
  const std::vector<std::string> special = SpecialFiles(dir.path());
  const std::string copy = dir.File("copy.ini");
  for (const std::string& path : special) {
    SCOPED_TRACE(path);
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, path.c_str()), 4u);
    EXPECT_STREQ(buffer, "dflt");
    EXPECT_FALSE(CopyFileA(path.c_str(), copy.c_str(), FALSE));
    EXPECT_EQ(TolvexBeginProfileEdit(path.c_str()), nullptr);
  }
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", special[0].c_str()));
  EXPECT_FALSE(FileExists(copy));
}

}  // namespace
}  // namespace tolvex::test
