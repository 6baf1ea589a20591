// new, show and check: a complete template, laid out in a grid for every count, that check finds
// clean; check's one line a problem; show and check leave the template byte for byte.
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

bool Overlap(const json& a, const json& b) {
  return a["left"] < b["right"] && b["left"] < a["right"] && a["top"] < b["bottom"] &&
         b["top"] < a["bottom"];
}

// Laid out on even lines (interlaced television), inside the canvas, clear of each other and
// of the previous and next buttons. Tool button n is library index n+1.
TEST(NewCommand, WritesEveryLayoutOnEvenLinesClearOfEachOtherAndChecksClean) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  const ToolResult made = RunTool({"new", file, "--buttons", "4", "--max", "9", "--title",
                                   "My Films", "--background", ExamplePicture("background.png"),
                                   "--pal", "--nav"});
  ASSERT_EQ(made.status, 0) << made.err;
  const ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 0) << checked.out;
  EXPECT_NE(checked.out.find("no problems found"), std::string::npos);

  const json page = ShowJson(file);
  EXPECT_EQ(page["page"]["mode"], "pal");
  EXPECT_EQ(page["page"]["title"], "My Films");
  EXPECT_EQ(page["layoutInUse"], 4);
  EXPECT_EQ(page["prev"]["enabled"], true);
  ASSERT_EQ(page["layouts"].size(), 9u);
  for (int count = 1; count <= 9; ++count) {
    const json& layout = page["layouts"][count - 1];
    ASSERT_EQ(layout["buttons"].size(), static_cast<size_t>(count));
    std::vector<json> placed = {page["prev"]["rect"], page["next"]["rect"]};
    int number = 0;
    for (const json& button : layout["buttons"]) {
      const json& r = button["rect"];
      SCOPED_TRACE("layout " + std::to_string(count) + ": " + r.dump());
      EXPECT_EQ(button["button"], ++number);
      EXPECT_EQ(button["title"], "Chapter " + std::to_string(number));
      const int left = r["left"], top = r["top"], right = r["right"], bottom = r["bottom"];
      EXPECT_TRUE(0 <= left && left < right && right <= 720) << "on the canvas";
      EXPECT_TRUE(0 <= top && top < bottom && bottom <= 576) << "on the canvas";
      EXPECT_EQ(top % 2 + bottom % 2 + button["title.position"]["y"].get<int>() % 2, 0)
          << "edges and title on even lines";
      for (const json& other : placed) EXPECT_FALSE(Overlap(r, other));
      placed.push_back(r);
    }
  }
  // The grid spans the taller PAL canvas down to the row of previous and next.
  const int gridBottom = page["layouts"][8]["buttons"][8]["rect"]["bottom"];
  EXPECT_LT(page["next"]["rect"]["top"].get<int>() - gridBottom, 80);
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
  std::vector<int> counts;
  for (const auto& layout : page["layouts"]) counts.push_back(layout["count"]);
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 3, 9}));
  const auto& three = page["layouts"][2];
  ASSERT_EQ(three["buttons"].size(), 2u);
  EXPECT_EQ(three["buttons"][0]["rect"],
            (json{{"left", 10}, {"top", 10}, {"right", 60}, {"bottom", 50}}));
  EXPECT_TRUE(three["buttons"][0]["button"].is_null());  // index 0 has no button number
  EXPECT_EQ(three["buttons"][1]["button"], 1);
  EXPECT_EQ(three["buttons"][1]["title"], "Three");
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
