// What a write splits (hard links), and that a writer killed at any moment, alone or
// committing an edit, leaves the old bytes or the new. What it keeps of the file it replaces
// is per system (posix/, win32/).
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
    const ChildEnd end = WaitChild(SpawnChild(
        step.role, {path, std::to_string(static_cast<int>(step.primitive)), std::to_string(step.nth)}));
    if (step.renamed) {
      EXPECT_TRUE(end.Succeeded()) << "exit code " << end.code;
      char k0[8], k99[8];
      GetPrivateProfileStringA("s", "k0", "", k0, sizeof k0, path.c_str());
      GetPrivateProfileStringA("s", "k99", "", k99, sizeof k99, path.c_str());
      EXPECT_EQ(std::string(k0) + " " + k99, "new new");
    } else {
      ASSERT_TRUE(end.killed) << "exit code " << end.code;
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
