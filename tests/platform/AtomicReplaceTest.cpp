// What a write keeps of the file it replaces (mode, owner, symbolic links), what it splits
// (hard links), and that a writer killed at any moment, alone or committing an edit, leaves
// the old bytes or the new.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

// A writer killed at each step of its replace, writing one key or committing an edit of 100,
// leaves the old bytes or, killed only after its rename, the whole change; the next write
// removes the temporary file it left.
TEST(AtomicReplace, WriterKilledAtEachStepLeavesOldOrWholeBytesAndNextWriteCleansUp) {
  using platform::Primitive;
  const std::string old = "[s]\r\nk=old\r\n";
  const struct {
    const char* role;
    Primitive primitive;
    int nth;
    bool renamed;
  } steps[] = {{"dies-at", Primitive::Lock, 1, false},       {"dies-at", Primitive::Open, 2, false},
               {"dies-at", Primitive::Write, 1, false},      {"dies-at", Primitive::Sync, 1, false},
               {"dies-at", Primitive::Rename, 1, false},     {"edit-dies-at", Primitive::Open, 1, false},
               {"edit-dies-at", Primitive::Write, 1, false}, {"edit-dies-at", Primitive::Sync, 1, false},
               {"edit-dies-at", Primitive::Rename, 1, false}, {"edit-dies-at", Primitive::Sync, 2, true}};
  for (const auto& step : steps) {
    SCOPED_TRACE(std::string(step.role) + " before call " + std::to_string(step.nth) +
                 " of primitive " + std::to_string(static_cast<int>(step.primitive)));
    TempDir dir;
    const std::string path = dir.File("t.ini");
    WriteFile(path, old);
    const int status = WaitChild(SpawnChild(
        step.role, {path, std::to_string(static_cast<int>(step.primitive)), std::to_string(step.nth)}));
    if (step.renamed) {
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
      char k0[8], k99[8];
      GetPrivateProfileStringA("s", "k0", "", k0, sizeof k0, path.c_str());
      GetPrivateProfileStringA("s", "k99", "", k99, sizeof k99, path.c_str());
      EXPECT_EQ(std::string(k0) + " " + k99, "new new");
    } else {
      ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "status " << status;
      EXPECT_EQ(ReadFile(path), old);
    }
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "next", path.c_str()));
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
