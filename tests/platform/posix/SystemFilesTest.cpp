// What only POSIX has: a new file follows the umask; a write keeps the owner and group of the
// file it replaces and leaves symbolic links in place; a bare name without $TOLVEX_PROFILE_DIR
// follows the XDG rules; a file-size rlimit fails the write instead of killing the process; a
// forked child can neither commit nor release its parent's edit. It also gives the shared tests
// their POSIX files: mode bits, doubled slashes and "." steps, a FIFO and two devices.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/ChildProcess.h"
#include "platform/LockProbe.h"
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

std::string Read(const char* key, const std::string& file) {
  char buffer[64];
  GetPrivateProfileStringA("s", key, "<none>", buffer, sizeof buffer, file.c_str());
  return buffer;
}

TEST(AtomicReplace, NewFilesFollowUmask) {
  TempDir dir;
  mode_t old = umask(027);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "1", dir.File("new.ini").c_str()));
  umask(old);
  EXPECT_EQ(StatOf(dir.File("new.ini")).st_mode & 07777, 0640u);
}

TEST(AtomicReplace, KeepsOwnerAndGroupWhenRoot) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to give a file away";
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  ASSERT_EQ(chown(path.c_str(), 65534, 65534), 0);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  EXPECT_EQ(StatOf(path).st_uid, 65534u);
  EXPECT_EQ(StatOf(path).st_gid, 65534u);
}

// Written directly, to a link whose file is not made yet, and through an edit's commit.
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

  TolvexProfileEdit* edit = TolvexBeginProfileEdit(dir.File("link.ini").c_str());
  ASSERT_NE(edit, nullptr);
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "4", dir.File("real/t.ini").c_str()));
  EXPECT_EQ(ReadFile(dir.File("real/t.ini")), "[s]\r\nk=2\r\n");
  EXPECT_TRUE(TolvexCommitProfileEdit(edit));
  TolvexEndProfileEdit(edit);
  EXPECT_EQ(ReadFile(dir.File("real/t.ini")), "[s]\r\nk=4\r\n");
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("link.ini")).st_mode));
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("dangling.ini")).st_mode));
}

TEST(ProfilePath, BareNameWithoutOwnFolderFollowsXdgThenHome) {
  TempDir dir;
  const char* own = std::getenv("TOLVEX_PROFILE_DIR");
  const char* xdgBefore = std::getenv("XDG_CONFIG_HOME");
  const char* homeBefore = std::getenv("HOME");
  const std::string saved[3] = {own ? own : "", xdgBefore ? xdgBefore : "",
                                homeBefore ? homeBefore : ""};
  SetEnvironment("TOLVEX_PROFILE_DIR", nullptr);
  SetEnvironment("XDG_CONFIG_HOME", dir.File("xdg").c_str());
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "xdg", "bare.ini"));
  EXPECT_EQ(Read("k", dir.File("xdg/tolvex/bare.ini")), "xdg");
  // Without XDG_CONFIG_HOME, or with a relative one (which the base-directory rules ignore),
  // the home folder's.
  SetEnvironment("HOME", dir.File("home").c_str());
  const std::filesystem::path cwd = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());  // where a relative folder would lead
  for (const char* xdg : {static_cast<const char*>(nullptr), "relative"}) {
    SetEnvironment("XDG_CONFIG_HOME", xdg);
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", xdg ? xdg : "unset", "bare.ini"));
    EXPECT_EQ(Read("k", dir.File("home/.config/tolvex/bare.ini")), xdg ? xdg : "unset");
  }
  EXPECT_FALSE(FileExists(dir.File("relative")));
  std::filesystem::current_path(cwd);
  SetEnvironment("TOLVEX_PROFILE_DIR", own ? saved[0].c_str() : nullptr);
  SetEnvironment("XDG_CONFIG_HOME", xdgBefore ? saved[1].c_str() : nullptr);
  SetEnvironment("HOME", homeBefore ? saved[2].c_str() : nullptr);
}

TEST(FileSizeLimit, FailsTheWriteWithoutKillingTheProcess) {
  TempDir dir;
  const std::string path = dir.File("t.ini"), original = "; keep\r\n[s]\r\nk=1\r\n\r\n";
  WriteFile(path, original);
  Child child = SpawnChild("filesize", {path, std::to_string(original.size() + 64), "4096"});
  ChildEnd end = WaitChild(child);
  ASSERT_TRUE(end.exited) << "killed";
  EXPECT_EQ(end.code, 0);
  EXPECT_EQ(ReadFile(path), original);
}

TEST(ForkedChild, NeitherCommitsNorReleasesItsParentsOpenChanges) {
  TempDir dir;
  const std::string path = dir.File("t.ini"), old = "[s]\r\nk=old\r\n";
  WriteFile(path, old);
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(path.c_str());
  ASSERT_NE(edit, nullptr);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "parent", path.c_str()));
  const pid_t child = fork();
  if (child == 0) {
    alarm(30);
    const bool refused = !TolvexCommitProfileEdit(edit);
    TolvexEndProfileEdit(edit);
    _exit(refused && ReadFile(path) == old ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_FALSE(FolderLockIsFree(path));
  EXPECT_TRUE(TolvexCommitProfileEdit(edit));
  TolvexEndProfileEdit(edit);
  EXPECT_EQ(Read("k", path), "parent");
}

}  // namespace

void MarkToKeep(const std::string& path) { EXPECT_EQ(chmod(path.c_str(), 0640), 0) << path; }
bool StillMarked(const std::string& path) { return (StatOf(path).st_mode & 07777) == 0640; }

std::vector<std::string> OtherSpellings(const std::string& folder) {
  return {folder + "//t.ini", folder + "/./t.ini"};
}

std::vector<std::string> SpecialFiles(const std::string& folder) {
  EXPECT_EQ(mkfifo((folder + "/fifo.ini").c_str(), 0644), 0);
  return {folder + "/fifo.ini", "/dev/zero", "/dev/null"};
}

}  // namespace tolvex::test
