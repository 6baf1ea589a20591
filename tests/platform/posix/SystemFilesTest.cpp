// What only POSIX has: a write leaves symbolic links in place, and a bare name without
// $TOLVEX_PROFILE_DIR follows the XDG rules. It also gives the shared tests their POSIX files:
// mode bits, a FIFO and two devices.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/ProfileKey.h"
#include "platform/SystemFiles.h"
#include "support/Environment.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

struct stat StatOf(const std::string& path) {
  struct stat info {};
  EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
  return info;
}

// Written directly, and to a link whose file is not made yet.
TEST(AtomicReplace, SymbolicLinkStaysALinkToTheChangedFile) {
  TempDir dir;
  ASSERT_EQ(mkdir(dir.File("real").c_str(), 0755), 0);
  WriteFile(dir.File("real/t.ini"), "[s]\r\nk=1\r\n");
  ASSERT_EQ(symlink("real/t.ini", dir.File("link.ini").c_str()), 0);
  ASSERT_EQ(symlink("real/later.ini", dir.File("dangling.ini").c_str()), 0);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", dir.File("link.ini").c_str()));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "3", dir.File("dangling.ini").c_str()));
  EXPECT_EQ(ReadFile(dir.File("real/t.ini")), "[s]\r\nk=2\r\n");
  EXPECT_EQ(ReadFile(dir.File("real/later.ini")), "[s]\r\nk=3\r\n");
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("link.ini")).st_mode));
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("dangling.ini")).st_mode));
}

TEST(ProfilePath, BareNameWithoutOwnFolderFollowsXdgThenHome) {
  TempDir dir;
  ScopedEnvironment own("TOLVEX_PROFILE_DIR", nullptr);
  ScopedEnvironment xdg("XDG_CONFIG_HOME", dir.File("xdg").c_str());
  ScopedEnvironment home("HOME", dir.File("home").c_str());
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "xdg", "bare.ini"));
  EXPECT_EQ(ReadKey(dir.File("xdg/tolvex/bare.ini"), "k"), "xdg");
  // A relative XDG_CONFIG_HOME, which the base-directory rules ignore, leads to the home folder.
  const std::filesystem::path cwd = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());  // where a relative folder would lead
  SetEnvironment("XDG_CONFIG_HOME", "relative");
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "home", "bare.ini"));
  std::filesystem::current_path(cwd);
  EXPECT_EQ(ReadKey(dir.File("home/.config/tolvex/bare.ini"), "k"), "home");
  EXPECT_FALSE(FileExists(dir.File("relative")));
}

}  // namespace

void MarkToKeep(const std::string& path) { EXPECT_EQ(chmod(path.c_str(), 0640), 0) << path; }
bool StillMarked(const std::string& path) { return (StatOf(path).st_mode & 07777) == 0640; }

std::vector<std::string> SpecialFiles(const std::string& folder) {
  EXPECT_EQ(mkfifo((folder + "/fifo.ini").c_str(), 0644), 0);
  return {folder + "/fifo.ini", "/dev/zero", "/dev/null"};
}

}  // namespace tolvex::test
