// What a write splits (hard links), and that a writer killed at any moment leaves the old
// bytes or the new. What it keeps of the file it replaces is per system (posix/, win32/).
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

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

// Our choice: the replace stays atomic, so the other name of a hard link keeps the old bytes.
TEST(AtomicReplace, HardLinkIsSplit) {
  TempDir dir;
  WriteFile(dir.File("t.ini"), "[s]\r\nk=1\r\n");
  std::filesystem::create_hard_link(dir.File("t.ini"), dir.File("other.ini"));
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
    Child child = SpawnChild("dies-at", {dir.File("t.ini"),
                                         std::to_string(static_cast<int>(step.primitive)),
                                         std::to_string(step.nth)});
    ChildEnd end = WaitChild(child);
    ASSERT_TRUE(end.killed) << "exit code " << end.code;
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
    Child child = SpawnChild("flipper", {path, std::to_string(size)});
    std::this_thread::sleep_for(std::chrono::milliseconds(delay(random)));
    KillChild(child);
    WaitChild(child);
    const std::string now = ReadFile(path);
    ASSERT_TRUE(now == content('a') || now == content('b'))
        << "round " << round << ": torn file of " << now.size() << " bytes";
  }
}

}  // namespace
}  // namespace tolvex::test
