// get and set: every kind of value round-trips, and bad input or a read-only template leave
// the file as it was. (A failing write leaves the
// file whole in the library's own tests.)
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

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
      {{}, "title", {"default"}, "", 1},  // reads as missing
      {{"--nav", "prev"}, "nav.picture", {""}, ""},  // empty, not missing
      {{}, "title.position", {"-5", "40"}, "-5 40"},
      {{}, "title.font.style", {"yes", "no", "true"}, "yes no yes"},
      {{}, "title.font.rgb", {"300", "0", "4294967295"}, "300 0 4294967295"},
      {{"--nav", "prev"}, "nav.rect", {"10", "20", "110", "70"}, "10 20 110 70"},
      {{"--nav", "next"}, "nav.navinfo", {"3", "7"}, "3 7"},
      {{"--button", "2"}, "button.rect", {"100", "120", "260", "210"}, "100 120 260 210"},
      {{"--button", "1"}, "button.navinfo", {"2", "3"}, "2 3"},  // every button's read back
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

TEST_F(PropertyCommand, BadInputIsOneLineNamingTheFileAndChangesNothing) {
  struct Bad {
    std::vector<std::string> args;
    std::string message;
  };
  const Bad cases[] = {
      {{"get", "titel"}, "unknown property 'titel'"},
      {{"set", "title.position", "1"}, "title.position takes 2 values (X Y), got 1"},
      {{"set", "button.frame.size", "-1", "--button", "1"}, "out of range"},
      {{"set", "button.title", "x"}, "button.title needs --button I"},
      {{"get", "button.title", "--button", "5"},
       "--button 5 is out of range: the layout in use has buttons 1..4"},
      {{"set", "title", "Holidays\r\nAddPrevButton=FALSE"}, "line break (CR or LF) or NUL"},
      {{"set", "music", "a\rb"}, "line break"},  // a lone CR starts a line in the file too
      {{"set", "title", "x", "--rescale"}, "--rescale goes only with mode"},
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
  MakeReadOnly(file);  // a read-only template is not replaced
  const ToolResult readOnly = Run({"set", "title", "New"});
  EXPECT_EQ(readOnly.status, 2);
  EXPECT_NE(readOnly.err.find("cannot write"), std::string::npos) << readOnly.err;
  EXPECT_EQ(ReadFile(file), before);
}

TEST_F(PropertyCommand, ATextLongerThanWhatReadsBackWarnsAtOnce) {
  const std::tuple<std::string, size_t, bool> cases[] = {
      {"title", 79, false},
      {"title.font.name", 200, false},  // read with 1000 bytes
      {"button.title.font.name", 80, true}};
  for (const auto& [property, length, warns] : cases) {
    const bool button = property.rfind("button.", 0) == 0;
    std::vector<std::string> args{"set", property, std::string(length, 'x')};
    if (button) args.insert(args.end(), {"--button", "2"});
    const ToolResult set = Run(args);
    EXPECT_EQ(set.status, 0) << property;
    const std::string where = button ? " of button 2" : "";
    EXPECT_EQ(set.err, warns ? "menutemplate: warning: " + property + where + " has " +
                                   std::to_string(length) +
                                   " characters; only the first 79 are read back\n"
                             : "")
        << property << " " << length;
  }
}

TEST(PropertyCommandFiles, MissingFilesAndLayoutsAreNamed) {
  TempDir dir;
  const std::string missing = dir.File("none.ini");
  const ToolResult set = RunTool({"set", missing, "title", "x"});
  EXPECT_EQ(set.status, 2);
  EXPECT_EQ(set.err, "menutemplate: " + missing + ": no such template file\n");
  EXPECT_FALSE(FileExists(missing));

  const std::string noCount = dir.File("nocount.ini"), text = "[Background]\r\nNTSC=TRUE\r\n";
  WriteFile(noCount, text);
  const ToolResult result = RunTool({"set", noCount, "button.title", "x", "--button", "1"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("no current button count"), std::string::npos) << result.err;
  EXPECT_EQ(ReadFile(noCount), text);
}

}  // namespace
}  // namespace tolvex::test
