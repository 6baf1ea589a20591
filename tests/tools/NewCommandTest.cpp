// new: a complete template, laid out in a grid for every count, that check finds clean.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

using nlohmann::json;
using tolvex::test::ExamplePicture;
using tolvex::test::FileExists;
using tolvex::test::ReadFile;
using tolvex::test::RunTool;
using tolvex::test::ShowJson;
using tolvex::test::TempDir;

namespace {

bool Inside(const json& r, int width, int height) {
  return r["left"] >= 0 && r["top"] >= 0 && r["right"] <= width && r["bottom"] <= height &&
         r["left"] < r["right"] && r["top"] < r["bottom"];
}

bool Overlap(const json& a, const json& b) {
  return a["left"] < b["right"] && b["left"] < a["right"] && a["top"] < b["bottom"] &&
         b["top"] < a["bottom"];
}

// Every layout 1..max holds exactly its count of buttons, titled "Chapter i", inside the
// canvas, clear of each other and of the previous and next buttons.
void ExpectTidyLayouts(const json& page, int max, int width, int height) {
  ASSERT_EQ(page["layouts"].size(), static_cast<std::size_t>(max));
  for (int count = 1; count <= max; ++count) {
    const json& layout = page["layouts"][count - 1];
    ASSERT_EQ(layout["count"], count);
    ASSERT_EQ(layout["buttons"].size(), static_cast<std::size_t>(count));
    std::vector<json> placed{page["prev"]["rect"], page["next"]["rect"]};
    for (const json& button : layout["buttons"]) {
      int index = button["index"];
      SCOPED_TRACE("layout " + std::to_string(count) + ", button " + std::to_string(index));
      EXPECT_EQ(button["title"], "Chapter " + std::to_string(index));
      EXPECT_TRUE(Inside(button["rect"], width, height)) << button["rect"];
      for (const json& other : placed) EXPECT_FALSE(Overlap(button["rect"], other));
      placed.push_back(button["rect"]);
    }
  }
}

}  // namespace

TEST(NewCommand, WritesEveryLayoutInsideTheNtscCanvasAndChecksClean) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  auto made = RunTool({"new", file, "--buttons", "4", "--max", "7", "--title", "My Films",
                       "--background", ExamplePicture("background.png"), "--button-picture",
                       ExamplePicture("button.png")});
  ASSERT_EQ(made.status, 0) << made.err;

  json page = ShowJson(file);
  EXPECT_EQ(page["page"]["mode"], "ntsc");
  EXPECT_EQ(page["page"]["title"], "My Films");
  EXPECT_EQ(page["page"]["buttons.max"], 7);
  EXPECT_EQ(page["page"]["buttons.current"], 4);
  EXPECT_EQ(page["layoutInUse"], 4);
  EXPECT_TRUE(page["layouts"][3]["current"]);
  EXPECT_TRUE(page["prev"]["enabled"]);
  ExpectTidyLayouts(page, 7, 720, 480);

  auto checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 0) << checked.out;
  EXPECT_NE(checked.out.find("no problems found"), std::string::npos);
}

TEST(NewCommand, PalUsesTheTallerCanvas) {
  TempDir dir;
  const std::string file = dir.File("pal.ini");
  ASSERT_EQ(RunTool({"new", file, "--pal", "--buttons", "9", "--max", "9"}).status, 0);
  json page = ShowJson(file);
  EXPECT_EQ(page["page"]["mode"], "pal");
  ExpectTidyLayouts(page, 9, 720, 576);
  // The grid uses the PAL height: its last row sits below where an NTSC page ends.
  EXPECT_GT(page["layouts"][8]["buttons"][8]["rect"]["bottom"], 432);
}

TEST(NewCommand, BareFileNameMeansTheCurrentFolderAndPicturesAreKeptRelative) {
  TempDir dir;
  ASSERT_EQ(RunTool({"new", "menu.ini", "--background", "bg.png"}, dir.path()).status, 0);
  EXPECT_TRUE(FileExists(dir.File("menu.ini")));
  EXPECT_EQ(RunTool({"get", "menu.ini", "background"}, dir.path()).out, "bg.png\n");
}

TEST(NewCommand, RefusesToReplaceAFileUnlessForcedAndChecksTheCounts) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  ASSERT_EQ(RunTool({"new", file, "--buttons", "2"}).status, 0);
  const std::string before = ReadFile(file);

  auto again = RunTool({"new", file, "--buttons", "3"});
  EXPECT_EQ(again.status, 2);
  EXPECT_NE(again.err.find(file + ": already exists"), std::string::npos) << again.err;
  EXPECT_EQ(ReadFile(file), before);

  EXPECT_EQ(RunTool({"new", file, "--buttons", "3", "--force"}).status, 0);
  EXPECT_EQ(RunTool({"get", file, "buttons.current"}).out, "3\n");

  auto tooMany = RunTool({"new", dir.File("other.ini"), "--buttons", "5", "--max", "3"});
  EXPECT_EQ(tooMany.status, 2);
  EXPECT_NE(tooMany.err.find("more than --max"), std::string::npos) << tooMany.err;
  EXPECT_FALSE(FileExists(dir.File("other.ini")));
  EXPECT_EQ(RunTool({"new", dir.File("x.ini"), "--buttons", "37"}).status, 2);
}
