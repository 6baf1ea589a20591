// menutemplate set against a program writing the same template through the library at the
// same time: both go through the library's lock, so neither loses an update.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
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

}  // namespace
}  // namespace tolvex::test
