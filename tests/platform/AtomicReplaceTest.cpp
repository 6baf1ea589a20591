// What a write keeps of the file it replaces (mode, owner, symbolic links), what it splits
// (hard links), and that a writer killed at any moment leaves the old bytes or the new.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>
#include <thread>

#include "platform/ChildProcess.h"
#include "platform/FaultInjection.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

struct stat StatOf(const std::string& path) {
  struct stat info {};
  EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
  return info;
}

TEST(AtomicReplace, KeepsModeBitsAndNewFilesFollowUmask) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  EXPECT_EQ(StatOf(path).st_mode & 07777, 0640u);

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

TEST(AtomicReplace, SymbolicLinkStaysALinkToTheChangedFile) {
  TempDir dir;
  ASSERT_EQ(mkdir(dir.File("real").c_str(), 0755), 0);
  WriteFile(dir.File("real/t.ini"), "[s]\r\nk=1\r\n");
  ASSERT_EQ(symlink("real/t.ini", dir.File("link.ini").c_str()), 0);
  ASSERT_EQ(symlink("real/later.ini", dir.File("dangling.ini").c_str()), 0);

  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", dir.File("link.ini").c_str()));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "3", dir.File("dangling.ini").c_str()));
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("link.ini")).st_mode));
  EXPECT_TRUE(S_ISLNK(StatOf(dir.File("dangling.ini")).st_mode));
  EXPECT_EQ(ReadFile(dir.File("real/t.ini")), "[s]\r\nk=2\r\n");
  EXPECT_EQ(ReadFile(dir.File("real/later.ini")), "[s]\r\nk=3\r\n");
}

// Our choice: the replace stays atomic, so the other name of a hard link keeps the old bytes.
TEST(AtomicReplace, HardLinkIsSplit) {
  TempDir dir;
  WriteFile(dir.File("t.ini"), "[s]\r\nk=1\r\n");
  ASSERT_EQ(link(dir.File("t.ini").c_str(), dir.File("other.ini").c_str()), 0);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", dir.File("t.ini").c_str()));
  EXPECT_EQ(ReadFile(dir.File("t.ini")), "[s]\r\nk=2\r\n");
  EXPECT_EQ(ReadFile(dir.File("other.ini")), "[s]\r\nk=1\r\n");
}

// A writer killed just before its rename leaves its temporary file; the next write removes it.
TEST(AtomicReplace, WriterKilledAtEachStepLeavesOldBytesAndNextWriteCleansUp) {
  using platform::Primitive;
  const std::string old = "[s]\r\nk=old\r\n";
  const struct {
    Primitive primitive;
    int nth;
  } steps[] = {{Primitive::Lock, 1}, {Primitive::Open, 2}, {Primitive::Write, 1},
               {Primitive::Sync, 1}, {Primitive::Rename, 1}};
  for (const auto& step : steps) {
    SCOPED_TRACE(static_cast<int>(step.primitive));
    TempDir dir;
    WriteFile(dir.File("t.ini"), old);
    pid_t child = SpawnChild("dies-at", {dir.File("t.ini"),
                                         std::to_string(static_cast<int>(step.primitive)),
                                         std::to_string(step.nth)});
    int status = WaitChild(child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "status " << status;
    EXPECT_EQ(ReadFile(dir.File("t.ini")), old);
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "next", dir.File("t.ini").c_str()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              1);
  }
}

TEST(AtomicReplace, KilledWriterLeavesOldOrNewBytesNeverAMix) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  const size_t size = 1 << 22;
  auto content = [&](char fill) { return "[s]\r\nbig=" + std::string(size, fill) + "\r\n"; };
  ASSERT_TRUE(WritePrivateProfileStringA("s", "big", std::string(size, 'a').c_str(), path.c_str()));

  std::mt19937 random(std::random_device{}());
  std::uniform_int_distribution<int> delay(2, 40);
  for (int round = 0; round < 20; ++round) {
    pid_t child = SpawnChild("flipper", {path, std::to_string(size)});
    std::this_thread::sleep_for(std::chrono::milliseconds(delay(random)));
    kill(child, SIGKILL);
    WaitChild(child);
    const std::string now = ReadFile(path);
    ASSERT_TRUE(now == content('a') || now == content('b'))
        << "round " << round << ": torn file of " << now.size() << " bytes";
  }
}

}  // namespace
}  // namespace tolvex::test
