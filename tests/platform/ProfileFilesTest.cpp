// Where a profile path leads (profile folder for bare names, current folder otherwise), and
// CopyFileA.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <filesystem>
#include <string>

#include "platform/ProfileKey.h"
#include "support/Environment.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

// A bare name lives in the profile folder, made on the first write; a name with a separator is
// taken from the current folder.
TEST(ProfilePath, BareNameLivesInProfileFolderAndAPathWithASeparatorInTheCurrentOne) {
  TempDir dir;
  const std::string folder = dir.File("profiles/tolvex");
  ScopedEnvironment own("TOLVEX_PROFILE_DIR", folder.c_str());
  EXPECT_EQ(ReadKey("bare.ini", "k"), "<none>");
  EXPECT_FALSE(FileExists(folder));
  const std::filesystem::path old = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "own", "bare.ini"));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "here", "./bare.ini"));
  std::filesystem::current_path(old);
  EXPECT_EQ(ReadFile(folder + "/bare.ini"), "[s]\r\nk=own\r\n");
  EXPECT_EQ(ReadFile(dir.File("bare.ini")), "[s]\r\nk=here\r\n");
}

TEST(CopyFile, CopiesBytesAndReadOnlyAndRefusesWhatItMayNotReplace) {
  TempDir dir;
  const std::string source = dir.File("a.ini"), target = dir.File("b.ini");
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), FALSE));  // no source
  EXPECT_FALSE(FileExists(target));
  const std::string bytes = std::string("[s]\r\nk=\0x\r\n", 11);
  WriteFile(source, bytes);
  WriteFile(target, "other");
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), TRUE));  // fail if it exists
  EXPECT_EQ(ReadFile(target), "other");
  EXPECT_TRUE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_EQ(ReadFile(target), bytes);

  MakeReadOnly(target);
  EXPECT_FALSE(CopyFileA(dir.path().c_str(), target.c_str(), FALSE));  // a folder as source
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_EQ(ReadFile(target), bytes);
  EXPECT_FALSE(CopyFileA(source.c_str(), "", FALSE));
  EXPECT_FALSE(CopyFileA(source.c_str(), dir.File("no/c.ini").c_str(), FALSE));

  // A copy of a read-only file is read-only.
  const std::string copy = dir.File("c.ini");
  ASSERT_TRUE(CopyFileA(target.c_str(), copy.c_str(), FALSE));
  EXPECT_TRUE(IsReadOnly(copy));
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", copy.c_str()));
}

}  // namespace
}  // namespace tolvex::test
