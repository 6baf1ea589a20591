// A writer killed at any step of its replace leaves the old bytes. What it keeps of the file it
// replaces is per system (posix/, win32/).
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/ChildProcess.h"
#include "platform/FaultInjection.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

// A writer killed before each step of its replace leaves the old bytes; the next write removes
// the temporary file it left. (An edit's commit replaces the file the same way.)
TEST(AtomicReplace, WriterKilledAtEachStepLeavesTheOldBytesAndNextWriteCleansUp) {
  using platform::Primitive;
  const std::string old = "[s]\r\nk=old\r\n";
  for (Primitive step : {Primitive::Open, Primitive::Write, Primitive::Sync, Primitive::Rename}) {
    SCOPED_TRACE(static_cast<int>(step));
    TempDir dir;
    const std::string path = dir.File("t.ini");
    WriteFile(path, old);
    EXPECT_EQ(RunChild("dies-at", {path, std::to_string(static_cast<int>(step)), "1"}), kDiedCode);
    EXPECT_EQ(ReadFile(path), old);
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "next", path.c_str()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
  }
}

}  // namespace
}  // namespace tolvex::test
