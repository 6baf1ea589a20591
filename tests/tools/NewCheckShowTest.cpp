// new, show and check: a complete template, laid out in a grid for every count, that check finds
// clean; show reports the page as read; show and check leave the template byte for byte.
#include "ToolRunner.h"

#include "support/SystemFeatures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

namespace tolvex::test {
namespace {

using nlohmann::json;

// Every layout checks clean (on the canvas, on even lines, clear of each other and of the
// previous and next buttons: check's rules), on a PAL page as well. Tool button n is library
// index n+1.
TEST(NewCommand, WritesEveryLayoutAndChecksClean) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  const ToolResult made = RunTool({"new", file, "--buttons", "4", "--max", "9", "--title",
                                   "My Films", "--background", ExamplePicture("background.png"),
                                   "--pal", "--nav"});
  ASSERT_EQ(made.status, 0) << made.err;
  const ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.out, file + ": no problems found\n");
  EXPECT_EQ(checked.status, 0);

  const json page = ShowJson(file);
  EXPECT_EQ(page["page"]["title"], "My Films");
  EXPECT_EQ(page["layoutInUse"], 4);
  ASSERT_EQ(page["layouts"].size(), 9u);
  const json& nine = page["layouts"][8]["buttons"];
  ASSERT_EQ(nine.size(), 9u);
  EXPECT_EQ(nine[8]["button"], 9);
  EXPECT_EQ(nine[8]["index"], 10);
  EXPECT_EQ(nine[8]["title"], "Chapter 9");
  // The grid spans the taller PAL canvas down to the row of previous and next.
  EXPECT_LT(page["next"]["rect"]["top"].get<int>() - nine[8]["rect"]["bottom"].get<int>(), 80);
}

TEST(NewCommand, BareNameMeansTheCurrentFolderAndAFileIsOnlyReplacedWhenForced) {
  TempDir dir;
  ASSERT_EQ(RunTool({"new", "menu.ini", "--buttons", "2", "--background", "bg.png"}, dir.path())
                .status, 0);
  EXPECT_EQ(RunTool({"get", "menu.ini", "background"}, dir.path()).out, "bg.png\n");
  const std::string file = dir.File("menu.ini"), before = ReadFile(file);
  const ToolResult again = RunTool({"new", file, "--buttons", "3"});
  EXPECT_EQ(again.status, 2);
  EXPECT_NE(again.err.find(file + ": already exists"), std::string::npos) << again.err;
  EXPECT_EQ(ReadFile(file), before);
  EXPECT_EQ(RunTool({"new", file, "--buttons", "3", "--force"}).status, 0);
  EXPECT_EQ(RunTool({"get", file, "buttons.current"}).out, "3\n");

  // A symbolic link stays a link, even one whose file is not made yet.
  if (const char* why = MissingFeature(Feature::kSymbolicLinks)) GTEST_SKIP() << why;
  const std::string link = dir.File("link.ini"), target = dir.File("made/by/link.ini");
  std::filesystem::create_directories(dir.File("made/by"));
  std::filesystem::create_symlink("made/by/link.ini", link);
  EXPECT_EQ(RunTool({"new", link, "--buttons", "2"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(RunTool({"get", target, "buttons.current"}).out, "2\n");
}

// A hand-written template: the count "03" (read as 3, but not as the tool would write it), a
// layout for 2 and 3 buttons, a stray layout for 9, LF line ends and a comment.
const char kTemplate[] =
    "; made by hand\n[Background]\nNTSC=FALSE\nMaximumNumberOfButton=3\n"
    "CurrentNumberOfButton=03\nBackgroundTitle=default\n[NumOfButton2]\nButtonTitle1=Two\n"
    "[NumOfButton3]\nButtonPosition0_left=10\nButtonPosition0_right=60\n"
    "ButtonPosition0_top=10\nButtonPosition0_bottom=50\nButtonTitle2=Three\n"
    "[NumOfButton9]\nButtonBmp8=nine.png\n";

TEST(ShowCommand, ReportsThePageAsReadAndShowAndCheckLeaveTheFileByteForByte) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, kTemplate);
  const ToolResult shown = RunTool({"show", file});
  ASSERT_EQ(shown.status, 0) << shown.err;
  for (const char* line : {"  title             (missing)\n", "Layout for 3 buttons (in use)\n",
                           "Layout for 1 button: not in the file\n", "  library index 0\n"}) {
    EXPECT_NE(shown.out.find(line), std::string::npos) << line << "\n" << shown.out;
  }
  const json page = ShowJson(file);
  EXPECT_TRUE(page["page"]["title"].is_null());  // holds "default"
  EXPECT_EQ(page["layoutInUse"], 3);
  const auto& three = page["layouts"][2]["buttons"];
  ASSERT_EQ(three.size(), 2u);
  EXPECT_EQ(three[0]["rect"], (json{{"left", 10}, {"top", 10}, {"right", 60}, {"bottom", 50}}));
  EXPECT_TRUE(three[0]["button"].is_null());  // index 0 has no button number
  EXPECT_EQ(three[1]["title"], "Three");
  EXPECT_EQ(page["layouts"][3]["buttons"][0]["picture"], "nine.png");

  const ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 2) << checked.out;  // buttons without a rectangle
  EXPECT_EQ(ReadFile(file), kTemplate);
  // A template that cannot be edited reads the same.
  MakeReadOnly(file);
  EXPECT_EQ(ShowJson(file), page);
  EXPECT_EQ(RunTool({"check", file}).out, checked.out);
  // Nothing is left behind in the template's folder either.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

}  // namespace
}  // namespace tolvex::test
