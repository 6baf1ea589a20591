// apply: show --json, a script's change and apply round-trip; code page 1252 text survives the
// trip byte for byte; a bad document or a failing write changes nothing.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tolvex::test {
namespace {

using nlohmann::json;

class ApplyCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunTool({"new", file, "--buttons", "2", "--max", "3"}).status, 0);
  }
  ToolResult Apply(const json& changes, unsigned long fileSizeLimit = 0) {
    WriteFile(changesFile, changes.dump());
    return RunTool({"apply", file, changesFile}, "", fileSizeLimit);
  }

  TempDir dir;
  std::string file = dir.File("menu.ini"), changesFile = dir.File("changes.json");
};

TEST_F(ApplyCommand, ShowChangedByAScriptAndAppliedReadsBackAsChanged) {
  const std::string before = ReadFile(file);
  json page = ShowJson(file);
  ASSERT_EQ(Apply(page).status, 0);
  EXPECT_EQ(ReadFile(file), before);  // the page as shown is the page as it is

  page["page"]["title"] = "Summer";
  page["page"]["title.font.style"]["bold"] = false;
  page["next"]["enabled"] = false;
  page["layouts"][0]["buttons"][0]["title"] = "Only one";
  page["layouts"][2]["buttons"][2]["rect"] = {{"left", 5}, {"top", 6}, {"right", 70}, {"bottom", 80}};
  const ToolResult applied = Apply(page);
  ASSERT_EQ(applied.status, 0) << applied.err;
  EXPECT_EQ(ShowJson(file), page);

  // Any part of the document will do; parts of a value keep the others, null keeps it all.
  ASSERT_EQ(Apply({{"layouts", {{{"count", 3}, {"buttons", {{{"button", 3},
                                                              {"rect", {{"right", 90}}},
                                                              {"title", nullptr}}}}}}}})
                .status, 0);
  page["layouts"][2]["buttons"][2]["rect"]["right"] = 90;
  EXPECT_EQ(ShowJson(file), page);
  EXPECT_EQ(RunTool({"get", file, "buttons.current"}).out, "2\n");  // switched back
}

TEST_F(ApplyCommand, EveryCodePageByteRoundTripsThroughShowAndApply) {
  std::string bytes;
  for (int b = 0x80; b <= 0xFF; ++b) bytes += static_cast<char>(b);
  ASSERT_EQ(RunTool({"set", file, "background", bytes}).status, 0);
  const json page = ShowJson(file);
  const std::string shown = page["page"]["background"];
  EXPECT_EQ(shown.substr(0, 3), "\u20AC");          // 0x80 is the euro sign
  EXPECT_NE(shown.find("\u0081"), std::string::npos);  // undefined bytes keep their value
  EXPECT_EQ(shown.substr(shown.size() - 2), "\u00FF");

  ASSERT_EQ(Apply({{"page", {{"music", shown}}}}).status, 0);
  EXPECT_NE(ReadFile(file).find("BackgroundMusic=" + bytes + "\r\n"), std::string::npos);
  EXPECT_EQ(RunTool({"get", file, "music"}).out, bytes + "\n");
}

TEST_F(ApplyCommand, ABadDocumentOrAFailedWriteChangesNothing) {
  const std::string before = ReadFile(file);
  const std::pair<json, std::string> cases[] = {
      {json::array(), "the document is not a JSON object"},
      {{{"page", {{"title", "New"}, {"titel", "x"}}}}, "page.titel: no such property"},
      {{{"page", {{"title", 5}}}}, "page.title: 5 is not a string"},
      {{{"page", {{"title", "\u0100"}}}}, "U+0100 is not in code page 1252"},
      {{{"page", {{"title", "a\r\nAddPrevButton=FALSE"}}}}, "line break"},
      {{{"page", {{"buttons.max", -1}}}}, "out of range"},
      {{{"prev", {{"rect", {{"wide", 1}}}}}}, "prev.rect.wide: is not one of left top right"},
      {{{"layouts", {{{"buttons", json::array()}}}}}, "layouts[0]: has no \"count\""},
      {{{"layouts", {{{"count", 2}, {"buttons", {{{"index", 7}, {"rect", {{"left", 1}}}}}}}}}},
       "layouts[0].buttons[0].rect: gives only some of its values"},
  };
  for (const auto& [changes, message] : cases) {
    SCOPED_TRACE(message);
    const ToolResult result = Apply(changes);
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(message), std::string::npos) << result.err;
  }
  WriteFile(changesFile, "{\"page\": ");
  EXPECT_NE(RunTool({"apply", file, changesFile}).err.find("is not valid JSON"),
            std::string::npos);
  // A file size limit makes the one write fail: nothing of the edit reaches the file.
  const ToolResult limited = Apply({{"page", {{"title", std::string(2000, 'x')}}}}, before.size() + 100);
  EXPECT_EQ(limited.status, 2);
  EXPECT_EQ(ReadFile(file), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 2);
}

}  // namespace
}  // namespace tolvex::test
