// menutemplate's writes beside what killed runs of older versions left: their staged copies
// beside a template. (set writes in one edit of the library, whose writers in several
// processes lose nothing: EditConcurrency.)
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace tolvex::test {
namespace {

TEST(ToolAndLibrary, AChangeRemovesStagedCopiesOfKilledOlderRuns) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  ASSERT_EQ(RunTool({"new", file, "--buttons", "1"}).status, 0);
  // Older versions staged "menu.ini" in ".menu.ini.XXXXXX"; one an hour old is a leftover, a
  // fresh one may belong to a run still going on, and other names are not theirs.
  const std::string stale = dir.File(".menu.ini.Ab12Cd"), fresh = dir.File(".menu.ini.Zz9Yy8"),
                    other = dir.File(".menu.ini.notours");
  for (const std::string& copy : {stale, fresh, other}) WriteFile(copy, "[Background]\r\n");
  const auto hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(stale, hourAgo);
  std::filesystem::last_write_time(other, hourAgo);
  ASSERT_EQ(RunTool({"show", file}).status, 0);
  EXPECT_TRUE(FileExists(stale));  // reading changes nothing
  ASSERT_EQ(RunTool({"set", file, "title", "x"}).status, 0);
  EXPECT_FALSE(FileExists(stale));
  EXPECT_TRUE(FileExists(fresh));
  EXPECT_TRUE(FileExists(other));
}

}  // namespace
}  // namespace tolvex::test
