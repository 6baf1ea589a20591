// The access rules shared by every accessor, exercised through the page-wide settings.
#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using AccessRules = TemplateFileTest;

TEST_F(AccessRules, IntegerTextIsSignedDecimalAndReadsBackBitForBit) {
  const struct { unsigned value; const char* text; } cases[] = {
      {0, "0"}, {42, "42"}, {2147483647u, "2147483647"}, {2147483648u, "-2147483648"},
      {4294967295u, "-1"}};
  for (const auto& c : cases) {
    ASSERT_EQ(1, tpl.SetMaxNumOfButtons(c.value));
    EXPECT_EQ(c.text, Key("Background", "MaximumNumberOfButton"));
    unsigned read = 12345;
    EXPECT_EQ(1, tpl.GetMaxNumOfButtons(&read));
    EXPECT_EQ(c.value, read);
  }
}

TEST_F(AccessRules, IntegerTextReadsLikeAtoi) {
  const struct { const char* text; unsigned value; } cases[] = {
      {"12abc", 12}, {"abc", 0}, {"", 0}, {"  7", 7}, {"-5", 4294967291u}, {"+9", 9},
      {"0x10", 0}, {"default7", 0}};
  for (const auto& c : cases) {
    SetKey("Background", "MaximumNumberOfButton", c.text);
    unsigned read = 12345;
    EXPECT_EQ(1, tpl.GetMaxNumOfButtons(&read)) << c.text;
    EXPECT_EQ(c.value, read) << c.text;
  }
}

TEST_F(AccessRules, FlagTextIsTrueOnlyForTRUEAndtrue) {
  EXPECT_EQ(1, tpl.SetAddPrevButton(-3));
  EXPECT_EQ("TRUE", Key("Background", "AddPrevButton"));
  EXPECT_EQ(1, tpl.SetAddPrevButton(0));
  EXPECT_EQ("FALSE", Key("Background", "AddPrevButton"));
  const struct { const char* text; int value; } cases[] = {
      {"TRUE", 1}, {"true", 1}, {"True", 0}, {"1", 0}, {"yes", 0}, {"FALSE", 0}, {"", 0},
      {"TRUE ", 1 /* trailing blanks are trimmed off the line */}};
  for (const auto& c : cases) {
    SetKey("Background", "AddPrevButton", c.text);
    int read = 42;
    EXPECT_EQ(1, tpl.GetAddPrevButton(&read)) << c.text;
    EXPECT_EQ(c.value, read) << c.text;
  }
}

TEST_F(AccessRules, DefaultAndAbsenceReadAsMissingButEmptyDoesNot) {
  int flag = 42;
  unsigned count = 42;
  CString text("kept");
  EXPECT_EQ(0, tpl.GetAddNextButton(&flag));
  EXPECT_FALSE(FileExists(path)) << "a getter never creates the file";

  SetKey("Background", "AddNextButton", "default");
  SetKey("Background", "MaximumNumberOfButton", "default");
  ASSERT_EQ(1, tpl.SetOutMaskFile("default"));
  EXPECT_EQ(0, tpl.GetAddNextButton(&flag));
  EXPECT_EQ(0, tpl.GetMaxNumOfButtons(&count));
  EXPECT_EQ(0, tpl.GetOutMaskFile(&text));
  EXPECT_EQ(42, flag);
  EXPECT_EQ(42u, count);
  EXPECT_EQ("kept", text);

  SetKey("Background", "AddNextButton", "");
  SetKey("Background", "MaximumNumberOfButton", "");
  ASSERT_EQ(1, tpl.SetOutMaskFile(""));
  EXPECT_EQ("", Key("Background", "OutMask")) << "an empty value keeps its key";
  EXPECT_EQ(1, tpl.GetAddNextButton(&flag));
  EXPECT_EQ(1, tpl.GetMaxNumOfButtons(&count));
  EXPECT_EQ(1, tpl.GetOutMaskFile(&text));
  EXPECT_EQ(0, flag);
  EXPECT_EQ(0u, count);
  EXPECT_EQ("", text);
}

TEST_F(AccessRules, TextsAreCutToTheirReadBuffer) {
  const std::string hundred(100, 'x');
  const std::string long1200(1200, 'y');
  ASSERT_EQ(1, tpl.SetBkTitle(hundred.c_str()));
  ASSERT_EQ(1, tpl.SetBkTitleFontName(hundred.c_str()));
  ASSERT_EQ(1, tpl.SetBkBMPFileName(long1200.c_str()));
  EXPECT_EQ(hundred, Key("Background", "BackgroundTitle")) << "written whole";
  CString title, font, picture;
  EXPECT_EQ(1, tpl.GetBkTitle(&title));
  EXPECT_EQ(1, tpl.GetBkTitleFontName(&font));
  EXPECT_EQ(1, tpl.GetFileName(&picture));
  EXPECT_EQ(hundred.substr(0, 79), title.GetString());
  EXPECT_EQ(hundred, font.GetString());
  EXPECT_EQ(long1200.substr(0, 999), picture.GetString());
}

TEST_F(AccessRules, FailedWritesReturnZeroAndLeaveTheFileAlone) {
  CMenuTemplate nowhere(dir.File("missing/menu.ini").c_str());
  EXPECT_EQ(0, nowhere.SetAddNextButton(1));
  EXPECT_FALSE(FileExists(dir.File("missing")));

  ASSERT_EQ(1, tpl.SetBkTitle("before"));
  const std::string before = Bytes();
  FailNthWrite(1);
  EXPECT_EQ(0, tpl.SetBkTitle("after"));
  EXPECT_EQ(before, Bytes());
  EXPECT_EQ(1, tpl.SetBkTitle("after")) << "the failure was a single one";
}

}  // namespace
}  // namespace tolvex::test
