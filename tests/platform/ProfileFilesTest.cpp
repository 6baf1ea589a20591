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

TEST(ProfilePath, BareNameLivesInProfileFolderCreatedOnFirstWrite) {
  TempDir dir;
  const std::string folder = dir.File("profiles/tolvex");
  ScopedEnvironment own("TOLVEX_PROFILE_DIR", folder.c_str());
  EXPECT_EQ(ReadKey("bare.ini", "k"), "<none>");
  EXPECT_FALSE(FileExists(folder));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "own", "bare.ini"));
  EXPECT_EQ(ReadFile(folder + "/bare.ini"), "[s]\r\nk=own\r\n");
  EXPECT_EQ(ReadKey("bare.ini", "k"), "own");
  EXPECT_FALSE(FileExists("bare.ini"));
}

TEST(ProfilePath, RelativePathWithSeparatorIsFromCurrentFolder) {
  TempDir dir;
  const std::filesystem::path old = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  ASSERT_TRUE(std::filesystem::create_directory("sub"));
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "v", "sub/r.ini"));
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "w", "./r.ini"));
  std::filesystem::current_path(old);
  EXPECT_EQ(ReadFile(dir.File("sub/r.ini")), "[s]\r\nk=v\r\n");
  EXPECT_EQ(ReadFile(dir.File("r.ini")), "[s]\r\nk=w\r\n");
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
