// What only POSIX has: a write leaves symbolic links in place, and a bare name without
// $TOLVEX_PROFILE_DIR follows the XDG rules. It also gives the shared tests their POSIX files:
// mode bits, a FIFO and two devices.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tolvex/Profile.h>

#include <filesystem>
#include <string>

#include "platform/ProfileKey.h"
#include "platform/SystemFiles.h"
#include "support/Environment.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

// Written directly, and to a link whose file is not made yet.
TEST(AtomicReplace, SymbolicLinkStaysALinkToTheChangedFile) {
  TempDir dir;
  fs::create_directory(dir.File("real"));
  WriteFile(dir.File("real/t.ini"), "[s]\r\nk=1\r\n");
  fs::create_symlink("real/t.ini", dir.File("link.ini"));
  fs::create_symlink("real/later.ini", dir.File("dangling.ini"));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", dir.File("link.ini").c_str()));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "3", dir.File("dangling.ini").c_str()));
  EXPECT_EQ(ReadFile(dir.File("real/t.ini")), "[s]\r\nk=2\r\n");
  EXPECT_EQ(ReadFile(dir.File("real/later.ini")), "[s]\r\nk=3\r\n");
  EXPECT_TRUE(fs::is_symlink(dir.File("link.ini")));
  EXPECT_TRUE(fs::is_symlink(dir.File("dangling.ini")));
}

TEST(ProfilePath, BareNameWithoutOwnFolderFollowsXdgThenHome) {
  TempDir dir;
  ScopedEnvironment own("TOLVEX_PROFILE_DIR", nullptr);
  ScopedEnvironment xdg("XDG_CONFIG_HOME", dir.File("xdg").c_str());
  ScopedEnvironment home("HOME", dir.File("home").c_str());
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "xdg", "bare.ini"));
  EXPECT_EQ(ReadKey(dir.File("xdg/tolvex/bare.ini"), "k"), "xdg");
  // A relative XDG_CONFIG_HOME, which the base-directory rules ignore, leads to the home folder.
  const fs::path cwd = fs::current_path();
  fs::current_path(dir.path());  // where a relative folder would lead
  SetEnvironment("XDG_CONFIG_HOME", "relative");
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "home", "bare.ini"));
  fs::current_path(cwd);
  EXPECT_EQ(ReadKey(dir.File("home/.config/tolvex/bare.ini"), "k"), "home");
  EXPECT_FALSE(FileExists(dir.File("relative")));
}

}  // namespace

constexpr auto kMarks = static_cast<fs::perms>(0640);
void MarkToKeep(const std::string& path) { fs::permissions(path, kMarks); }
bool StillMarked(const std::string& path) { return fs::status(path).permissions() == kMarks; }

std::vector<std::string> SpecialFiles(const std::string& folder) {
  EXPECT_EQ(mkfifo((folder + "/fifo.ini").c_str(), 0644), 0);
  return {folder + "/fifo.ini", "/dev/zero", "/dev/null"};
}

}  // namespace tolvex::test
