// show and check read every layout without changing a byte of the template, and show reports
// the page as the library reads it.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using tolvex::test::ReadFile;
using tolvex::test::RunTool;
using tolvex::test::ShowJson;
using tolvex::test::TempDir;
using tolvex::test::ToolResult;
using tolvex::test::WriteFile;

namespace {

// A hand-written template: the count "03" (read as 3, but not as the tool would write it), a
// layout for 2 and 3 buttons, a stray layout for 9, LF line ends and a comment.
const char kTemplate[] =
    "; made by hand\n"
    "[Background]\n"
    "NTSC=FALSE\n"
    "MaximumNumberOfButton=3\n"
    "CurrentNumberOfButton=03\n"
    "BackgroundTitle=default\n"
    "[NumOfButton2]\n"
    "ButtonTitle1=Two\n"
    "[NumOfButton3]\n"
    "ButtonPosition0_left=10\nButtonPosition0_right=60\nButtonPosition0_top=10\n"
    "ButtonPosition0_bottom=50\n"
    "ButtonTitle2=Three\n"
    "[NumOfButton9]\n"
    "ButtonBmp8=nine.png\n";

}  // namespace

TEST(ReadOnlyCommands, ShowAndCheckLeaveTheFileByteForByte) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, kTemplate);
  for (const auto& args : std::vector<std::vector<std::string>>{
           {"show", file}, {"show", file, "--json"}, {"check", file}}) {
    ToolResult result = RunTool(args);
    EXPECT_NE(result.status, -1) << args[0];
    EXPECT_EQ(ReadFile(file), kTemplate) << args[0];
  }
  // Nothing is left behind in the template's folder either.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                          std::filesystem::directory_iterator()),
            1);
}

TEST(ReadOnlyCommands, ShowJsonFindsEveryLayoutAndButton) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, kTemplate);
  nlohmann::json page = ShowJson(file);
  EXPECT_EQ(page["page"]["mode"], "pal");
  EXPECT_EQ(page["page"]["buttons.current"], 3);
  EXPECT_TRUE(page["page"]["title"].is_null());  // holds "default"
  EXPECT_TRUE(page["page"]["music"].is_null());
  EXPECT_EQ(page["layoutInUse"], 3);

  std::vector<int> counts;
  for (const auto& layout : page["layouts"]) counts.push_back(layout["count"]);
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 3, 9}));
  const auto& one = page["layouts"][0];
  EXPECT_FALSE(one["section"]);
  EXPECT_TRUE(one["buttons"].empty());

  const auto& three = page["layouts"][2];
  EXPECT_TRUE(three["current"]);
  ASSERT_EQ(three["buttons"].size(), 2u);
  EXPECT_EQ(three["buttons"][0]["index"], 0);
  EXPECT_EQ(three["buttons"][0]["rect"],
            (nlohmann::json{{"left", 10}, {"top", 10}, {"right", 60}, {"bottom", 50}}));
  EXPECT_TRUE(three["buttons"][0]["title"].is_null());
  EXPECT_EQ(three["buttons"][1]["title"], "Three");
  EXPECT_EQ(page["layouts"][3]["buttons"][0]["picture"], "nine.png");
}

TEST(ReadOnlyCommands, ShowTextListsLayoutsAndMissingValues) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, kTemplate);
  ToolResult shown = RunTool({"show", file});
  ASSERT_EQ(shown.status, 0) << shown.err;
  for (const char* line : {"  mode              pal\n", "  title             (missing)\n",
                           "Layout for 3 buttons (in use)\n",
                           "Layout for 1 button: not in the file\n", "    title  "})
    EXPECT_NE(shown.out.find(line), std::string::npos) << line << "\n" << shown.out;
}
