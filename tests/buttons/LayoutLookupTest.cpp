#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using LayoutLookup = ButtonTemplateTest;

TEST_F(LayoutLookup, EachCountKeepsItsOwnLayout) {
  EXPECT_EQ(1, tpl.SetBtnBMP(2, "three.png"));
  EXPECT_EQ("three.png", Key("NumOfButton3", "ButtonBmp2"));
  tpl.SetCurrentNumOfButtons(4);
  CString name("kept");
  EXPECT_EQ(0, tpl.GetBtnBMP(2, &name));
  EXPECT_EQ("kept", name);
  EXPECT_EQ(1, tpl.SetBtnBMP(2, "four.png"));
  tpl.SetCurrentNumOfButtons(3);
  EXPECT_EQ(1, tpl.GetBtnBMP(2, &name));
  EXPECT_EQ("three.png", name);
  EXPECT_EQ("four.png", Key("NumOfButton4", "ButtonBmp2"));
}

TEST_F(LayoutLookup, TheCountIsReadAfreshOnEveryCall) {
  tpl.SetBtnTitleFontSize(1, 30);
  CMenuTemplate other(path.c_str());
  other.SetCurrentNumOfButtons(4);
  unsigned size = 0;
  EXPECT_EQ(0, tpl.GetBtnTitleFontSize(1, &size)) << "the object's cached count is not used";
  SetKey("Background", "CurrentNumberOfButton", "3");  // as a hand edit would
  EXPECT_EQ(1, tpl.GetBtnTitleFontSize(1, &size));
  EXPECT_EQ(30u, size);
}

TEST_F(LayoutLookup, CountTextNamesTheLayoutAsAtoiReadsIt) {
  const struct { const char* count; const char* section; } cases[] = {
      {"03", "NumOfButton3"}, {"+3", "NumOfButton3"}, {"abc", "NumOfButton0"},
      {"", "NumOfButton0"}, {"-2", "NumOfButton-2"}, {"Error", "NumOfButton0"},
      {"default", "NumOfButton0"}, {"7 buttons", "NumOfButton7"}};
  for (const auto& c : cases) {
    SetKey("Background", "CurrentNumberOfButton", c.count);
    const std::string title = std::string("for:") + c.count;
    ASSERT_EQ(1, tpl.SetBtnTitle(5, title.c_str())) << c.count;
    EXPECT_EQ(title, Key(c.section, "ButtonTitle5")) << c.count;
  }
}

TEST_F(LayoutLookup, MissingCountOrErrorStopsEveryButtonCall) {
  auto expectRefused = [this](const char* why) {
    const std::string before = Bytes();
    EXPECT_EQ(0, tpl.SetBtnPosition(0, {1, 2, 3, 4})) << why;
    EXPECT_EQ(0, tpl.SetBtnNavInfo(0, 1, 2)) << why;
    EXPECT_EQ(0, tpl.SetBtnTitleFontStyle(1, 1, 1, 1)) << why;
    EXPECT_EQ(before, Bytes()) << why;
    unsigned r = 5, c = 5;
    CString title("kept");
    EXPECT_EQ(0, tpl.GetBtnNavInfo(2, &r, &c)) << why;
    EXPECT_EQ(0, tpl.GetBtnTitle(2, &title)) << why;
    EXPECT_TRUE(r == 5 && c == 5 && title == "kept") << why;
  };
  SetKey("NumOfButton0", "ButtonTitle2", "zero");
  SetKey("Background", "CurrentNumberOfButton", "error");
  expectRefused("error");
  RemoveKey("Background", "CurrentNumberOfButton");
  expectRefused("no key");
  tpl.SetTemplateFile(dir.File("absent.ini").c_str());
  expectRefused("no file");
  EXPECT_FALSE(FileExists(dir.File("absent.ini")));
}

TEST_F(LayoutLookup, IndexIsPrintedSignedAndComparedWithNothing) {
  tpl.SetMaxNumOfButtons(4);
  EXPECT_EQ(1, tpl.SetBtnBMP(4294967295u, "minus.png"));
  EXPECT_EQ(1, tpl.SetBtnBMP(7, "seven.png"));
  EXPECT_EQ(1, tpl.SetBtnTitleFontSize(57, 12));
  EXPECT_EQ(1, tpl.SetBtnPosition(2147483648u, {0, 0, 1, 1}));
  EXPECT_EQ("minus.png", Key("NumOfButton3", "ButtonBmp-1"));
  EXPECT_EQ("seven.png", Key("NumOfButton3", "ButtonBmp7"));
  EXPECT_EQ("12", Key("NumOfButton3", "ButtonTitleFont_Size57"));
  EXPECT_EQ("1", Key("NumOfButton3", "ButtonPosition-2147483648_right"));
  CString name;
  EXPECT_EQ(1, tpl.GetBtnBMP(7, &name));
  EXPECT_EQ("seven.png", name);
}

}  // namespace
}  // namespace tolvex::test
