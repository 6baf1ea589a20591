// menutemplate's writes beside other writers: set against a program writing the same template
// through the library at the same time (both go through the library's lock, so neither loses
// an update), and the staged copies that killed runs of older versions left beside a template.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <utime.h>
#include <unistd.h>

#include <string>

namespace tolvex::test {
namespace {

std::string Read(const std::string& file, const std::string& section, const std::string& key) {
  char value[80];
  GetPrivateProfileStringA(section.c_str(), key.c_str(), "(missing)", value, sizeof value,
                           file.c_str());
  return value;
}

TEST(ToolAndLibrary, SetAndALibraryWriterLoseNoUpdateOfEachOther) {
  TempDir dir;
  const std::string file = dir.File("menu.ini"), stop = dir.File("stop"),
                    count = dir.File("count");
  constexpr int kSets = 12;
  ASSERT_EQ(RunTool({"new", file, "--buttons", std::to_string(kSets)}).status, 0);
  // The writer adds a key of its own until told to stop, then says how many it wrote.
  pid_t writer = fork();
  if (writer == 0) {
    int written = 0;
    for (; !FileExists(stop); ++written) {
      const std::string key = "Key" + std::to_string(written);
      if (!WritePrivateProfileStringA("Library", key.c_str(), key.c_str(), file.c_str()))
        _exit(1);
    }
    WriteFile(count, std::to_string(written));
    _exit(0);
  }
  for (int i = 1; i <= kSets; ++i) {
    const ToolResult set = RunTool(
        {"set", file, "button.title", "Title " + std::to_string(i), "--button", std::to_string(i)});
    EXPECT_EQ(set.status, 0) << set.err;
  }
  WriteFile(stop, "");
  int status = 0;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

  const int written = std::stoi(ReadFile(count));
  EXPECT_GT(written, 0);
  for (int i = 0; i < written; ++i)
    EXPECT_EQ(Read(file, "Library", "Key" + std::to_string(i)), "Key" + std::to_string(i));
  const nlohmann::json page = ShowJson(file);
  ASSERT_EQ(page["layouts"][kSets - 1]["buttons"].size(), static_cast<size_t>(kSets));
  for (const auto& button : page["layouts"][kSets - 1]["buttons"])
    EXPECT_EQ(button["title"], "Title " + button["button"].dump());
}

TEST(ToolAndLibrary, AChangeRemovesStagedCopiesOfKilledOlderRuns) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  ASSERT_EQ(RunTool({"new", file, "--buttons", "1"}).status, 0);
  // Older versions staged "menu.ini" in ".menu.ini.XXXXXX"; one an hour old is a leftover, a
  // fresh one may belong to a run still going on, and other names are not theirs.
  const std::string stale = dir.File(".menu.ini.Ab12Cd"), fresh = dir.File(".menu.ini.Zz9Yy8"),
                    other = dir.File(".menu.ini.notours");
  for (const std::string& copy : {stale, fresh, other}) WriteFile(copy, "[Background]\r\n");
  const struct utimbuf hourAgo {time(nullptr) - 3600, time(nullptr) - 3600};
  ASSERT_EQ(utime(stale.c_str(), &hourAgo), 0);
  ASSERT_EQ(utime(other.c_str(), &hourAgo), 0);
  ASSERT_EQ(RunTool({"show", file}).status, 0);
  EXPECT_TRUE(FileExists(stale));  // reading changes nothing
  ASSERT_EQ(RunTool({"set", file, "title", "x"}).status, 0);
  EXPECT_FALSE(FileExists(stale));
  EXPECT_TRUE(FileExists(fresh));
  EXPECT_TRUE(FileExists(other));
}

}  // namespace
}  // namespace tolvex::test
