// apply: show --json, a script's change and apply round-trip, code page 1252 text included; a
// bad document changes nothing; hostile documents (deep, huge, endless, with control
// characters) give one short line and change nothing.
#include "ToolRunner.h"

#include "support/IdleFifo.h"
#include "support/SystemFeatures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace tolvex::test {
namespace {

using nlohmann::json;

class ApplyCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunTool({"new", file, "--buttons", "2", "--max", "3"}).status, 0);
  }
  ToolResult Apply(const json& changes) {
    WriteFile(changesFile, changes.dump());
    return RunTool({"apply", file, changesFile});
  }

  TempDir dir;
  std::string file = dir.File("menu.ini"), changesFile = dir.File("changes.json");
};

TEST_F(ApplyCommand, ShowChangedByAScriptAndAppliedReadsBackAsChanged) {
  const std::string before = ReadFile(file);
  json page = ShowJson(file);
  ASSERT_EQ(Apply(page).status, 0);
  EXPECT_EQ(ReadFile(file), before);  // the page as shown is the page as it is

  page["page"]["title"] = "Été €5";  // code page 1252 text, as UTF-8 in the document
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

TEST_F(ApplyCommand, ABadDocumentChangesNothing) {
  const std::string before = ReadFile(file);
  const std::pair<json, std::string> cases[] = {
      {json::array(), "the document is not a JSON object"},
      {{{"page", {{"title", "New"}, {"titel", "x"}}}}, "page.titel: no such property"},
      {{{"page", {{"title", "\u0100"}}}}, "U+0100 is not in code page 1252"},
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
  EXPECT_EQ(ReadFile(file), before);
}

TEST_F(ApplyCommand, HostileDocumentsGiveOneShortEscapedLineAndChangeNothing) {
  const std::string before = ReadFile(file);
  const std::string open(100000, '['), close(100000, ']');
  std::string elements = "[0";
  for (int i = 1; i < 5000000; ++i) elements += ",0";
  const std::pair<std::string, std::string> cases[] = {
      // Deep where a text and where a count is read.
      {"{\"page\":{\"title\":" + open + close + "}}", "more than 32 deep"},
      {"{\"layouts\":[{\"count\":" + open + close + "}]}", "more than 32 deep"},
      {"{\"page\":{\"title\":" + elements + "]}}", "an array of 5000000 elements is not a string"},
      {json{{"page", {{"ti\u001btle", 1}}}}.dump(), "page.ti\\etle: no such property"},
      {json{{"page", {{"ti\u001b[2Jtle\nforged: line", 1}}}}.dump(), ""},
      {json{{"page", {{std::string(100000, 'n'), 1}}}}.dump(), ""},
      {json{{"page", {{"mode", std::string(100000, 'x') + "\u001b"}}}}.dump(), ""}};
  for (const auto& [document, message] : cases) {
    WriteFile(changesFile, document);
    const ToolResult result = RunTool({"apply", file, changesFile});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(message), std::string::npos) << result.err.substr(0, 300);
    // One line of at most a few hundred bytes, without a control character a terminal would
    // act on.
    EXPECT_LT(result.err.size(), 300u) << result.err.substr(0, 300);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1)
        << result.err.substr(0, 300);
    EXPECT_EQ(result.err.find('\x1b'), std::string::npos) << result.err.substr(0, 300);
  }
  EXPECT_EQ(ReadFile(file), before);
}

TEST_F(ApplyCommand, DevicesPipesAndHugeFilesAreRefusedWithoutReadingThem) {
  if (const char* why = MissingFeature(Feature::kFifos)) GTEST_SKIP() << why;
  const std::string fifo = dir.File("changes.fifo"), huge = dir.File("huge.json");
  const IdleFifo idle(fifo);
  WriteFile(huge, "");
  std::filesystem::resize_file(huge, 2LL << 30);  // sparse: 2 GB that take no room
  for (const auto& [changes, message] : {std::pair<std::string, std::string>{"/dev/zero", "is a device"},
                                         {fifo, "named pipe"},
                                         {dir.path(), "is a folder"},
                                         {huge, "is 2 GB, more than the 16 MB"}}) {
    const ToolResult result = RunTool({"apply", file, changes}, "", 20);
    EXPECT_EQ(result.status, 2) << changes;
    EXPECT_NE(result.err.find(message), std::string::npos) << result.err;
  }
}

TEST_F(ApplyCommand, TextsMayNotOutgrowTheTemplateLimit) {
  // Each document is within the limit of a document; the second would take the template past
  // the size the renderer reads.
  ASSERT_EQ(Apply({{"page", {{"title", std::string(9 << 20, 't')}}}}).status, 0);
  const std::string before = ReadFile(file);
  const ToolResult over = Apply({{"page", {{"music", std::string(9 << 20, 'm')}}}});
  EXPECT_EQ(over.status, 2);
  EXPECT_NE(over.err.find("page.music: 9437184 characters would make the template larger than "
                          "the 16 MB the renderer reads"),
            std::string::npos)
      << over.err.substr(0, 300);
  EXPECT_EQ(ReadFile(file), before);
}

}  // namespace
}  // namespace tolvex::test
