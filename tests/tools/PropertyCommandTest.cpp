// get and set: every kind of value round-trips, button properties follow the current layout,
// and bad input, a read-only template or a failing write leave the file as it was.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace tolvex::test {
namespace {

class PropertyCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunTool({"new", file, "--buttons", "4", "--max", "4"}).status, 0);
  }
  ToolResult Run(std::vector<std::string> args) {
    args.insert(args.begin() + 1, file);
    return RunTool(args);
  }

  TempDir dir;
  std::string file = dir.File("menu.ini");
};

struct RoundTrip {
  std::vector<std::string> where;  // --button I or --nav prev|next, if any
  std::string property;
  std::vector<std::string> values;
  std::string printed;
  int status = 0;
};

TEST_F(PropertyCommand, EveryKindOfValueReadsBackAsWritten) {
  const RoundTrip cases[] = {
      {{}, "mode", {"pal"}, "pal"},
      {{}, "title", {"Films of 1999 = \"best\""}, "Films of 1999 = \"best\""},
      {{}, "title", {""}, ""},
      {{}, "title", {"default"}, "", 1},  // reads as missing
      {{"--nav", "prev"}, "nav.picture", {""}, ""},  // empty, not missing
      {{}, "title.position", {"-5", "40"}, "-5 40"},
      {{}, "title.font.style", {"yes", "no", "true"}, "yes no yes"},
      {{}, "title.font.rgb", {"300", "0", "4294967295"}, "300 0 4294967295"},
      {{}, "buttons.max", {"9"}, "9"},
      {{"--nav", "next"}, "nav.enabled", {"no"}, "no"},
      {{"--nav", "prev"}, "nav.rect", {"10", "20", "110", "70"}, "10 20 110 70"},
      {{"--nav", "next"}, "nav.navinfo", {"3", "7"}, "3 7"},
      {{"--button", "2"}, "button.rect", {"100", "120", "260", "210"}, "100 120 260 210"},
      {{"--button", "3"}, "button.title.font.name", {"DejaVu Serif"}, "DejaVu Serif"},
      {{"--button", "4"}, "button.navinfo", {"2", "3"}, "2 3"},
      {{"--button", "57"}, "button.frame.size", {"6"}, "6"},
  };
  for (const RoundTrip& c : cases) {
    SCOPED_TRACE(c.property);
    std::vector<std::string> set{"set", c.property};
    set.insert(set.end(), c.values.begin(), c.values.end());
    set.insert(set.end(), c.where.begin(), c.where.end());
    ToolResult written = Run(set);
    ASSERT_EQ(written.status, 0) << written.err;
    std::vector<std::string> get{"get", c.property};
    get.insert(get.end(), c.where.begin(), c.where.end());
    ToolResult read = Run(get);
    EXPECT_EQ(read.status, c.status) << read.err;
    EXPECT_EQ(read.out, c.status ? "" : c.printed + "\n");
  }
}

TEST_F(PropertyCommand, ButtonPropertiesFollowTheCurrentLayout) {
  ASSERT_EQ(Run({"set", "button.title", "Intro", "--button", "1"}).status, 0);
  ASSERT_EQ(Run({"set", "buttons.current", "2"}).status, 0);
  EXPECT_EQ(Run({"get", "button.title", "--button", "1"}).out, "Chapter 1\n");
  EXPECT_EQ(Run({"get", "button.title", "--button", "3"}).status, 1);
  ASSERT_EQ(Run({"set", "buttons.current", "4"}).status, 0);
  EXPECT_EQ(Run({"get", "button.title", "--button", "1"}).out, "Intro\n");
}

TEST_F(PropertyCommand, BadInputIsOneLineNamingTheFileAndChangesNothing) {
  struct Bad {
    std::vector<std::string> args;
    std::string message;
  };
  const Bad cases[] = {
      {{"get", "titel"}, "unknown property 'titel'"},
      {{"set", "title.position", "1"}, "title.position takes 2 values (X Y), got 1"},
      {{"set", "title", "a", "b"}, "title takes 1 value (TEXT), got 2"},
      {{"set", "title.font.size", "12abc"}, "'12abc' is not a number"},
      {{"set", "button.frame.size", "-1", "--button", "1"}, "out of range"},
      {{"set", "mode", "secam"}, "neither ntsc nor pal"},
      {{"set", "button.title", "x"}, "button.title needs --button I"},
      {{"get", "title", "--button", "1"}, "title takes no --button"},
      {{"get", "nav.rect"}, "nav.rect needs --nav prev|next"},
  };
  const std::string before = ReadFile(file);
  for (const Bad& c : cases) {
    ToolResult result = Run(c.args);
    SCOPED_TRACE(c.message);
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(file + ": "), std::string::npos) << result.err;
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
  EXPECT_EQ(Run({"get", "nav.rect", "--nav", "middle"}).status, 2);
  chmod(file.c_str(), 0444);  // a read-only template is not replaced
  const ToolResult readOnly = Run({"set", "title", "New"});
  EXPECT_EQ(readOnly.status, 2);
  EXPECT_NE(readOnly.err.find("cannot write"), std::string::npos) << readOnly.err;
  EXPECT_EQ(ReadFile(file), before);
}

TEST(PropertyCommandFiles, MissingFilesAndLayoutsAreNamed) {
  TempDir dir;
  const std::string missing = dir.File("none.ini");
  for (const auto& args : std::vector<std::vector<std::string>>{
           {"get", missing, "title"}, {"set", missing, "title", "x"}, {"show", missing},
           {"check", missing}, {"render", missing}}) {
    ToolResult result = RunTool(args);
    EXPECT_EQ(result.status, 2) << args[0];
    EXPECT_EQ(result.err, "menutemplate: " + missing + ": no such template file\n");
  }
  EXPECT_FALSE(FileExists(missing));

  const std::string noCount = dir.File("nocount.ini"), text = "[Background]\r\nNTSC=TRUE\r\n";
  WriteFile(noCount, text);
  const ToolResult result = RunTool({"set", noCount, "button.title", "x", "--button", "1"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("no current button count"), std::string::npos) << result.err;
  EXPECT_EQ(ReadFile(noCount), text);
}

TEST(PropertyCommandFiles, AWriteThatFailsHalfWayLeavesTheFileWhole) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  // new cannot write the whole template: no template appears, and nothing is left over.
  ToolResult made = RunTool({"new", file, "--buttons", "4"}, "", 4000);
  EXPECT_EQ(made.status, 2);
  EXPECT_NE(made.err.find(file + ": cannot write"), std::string::npos) << made.err;
  EXPECT_TRUE(std::filesystem::is_empty(dir.path()));

  // set of a value that no longer fits: the template keeps every byte.
  ASSERT_EQ(RunTool({"new", file, "--buttons", "1"}).status, 0);
  const std::string before = ReadFile(file);
  ToolResult set = RunTool({"set", file, "button.title.position", "1000000", "-1000000",
                            "--button", "1"},
                           "", before.size() + 4);
  EXPECT_EQ(set.status, 2);
  EXPECT_NE(set.err.find(file + ": cannot write the file, which is left as it was"),
            std::string::npos)
      << set.err;
  EXPECT_EQ(ReadFile(file), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

}  // namespace
}  // namespace tolvex::test
