#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using PageSettings = TemplateFileTest;
using BackgroundTitle = TemplateFileTest;
using Inspect = CMenuTemplateInspector;

TEST_F(PageSettings, EachSetterWritesItsKeyAndItsGetterReadsItBack) {
  struct Row {
    std::function<int(CMenuTemplate&)> set;
    const char* key;
    const char* text;
    std::function<bool(CMenuTemplate&)> readsBack;
  };
  const Row rows[] = {
      {[](CMenuTemplate& t) { return t.SetTemplateMode(2); }, "NTSC", "TRUE",
       [](CMenuTemplate& t) { int v = 9; return t.GetTemplateMode(&v) && v == 1; }},
      {[](CMenuTemplate& t) { return t.SetBkBMPFileName("bg.png"); }, "BackgroundBmp", "bg.png",
       [](CMenuTemplate& t) { CString v; return t.GetFileName(&v) && v == "bg.png"; }},
      {[](CMenuTemplate& t) { return t.SetMusicFileName("m.mp2"); }, "BackgroundMusic", "m.mp2",
       [](CMenuTemplate& t) { CString v; return t.GetMusicFileName(&v) && v == "m.mp2"; }},
      {[](CMenuTemplate& t) { return t.SetMaxNumOfButtons(2); }, "MaximumNumberOfButton", "2",
       [](CMenuTemplate& t) { unsigned v = 0; return t.GetMaxNumOfButtons(&v) && v == 2; }},
      {[](CMenuTemplate& t) { return t.SetCurrentNumOfButtons(5); }, "CurrentNumberOfButton", "5",
       [](CMenuTemplate& t) { unsigned v = 0; return t.GetCurrentNumOfButtons(&v) && v == 5; }},
      {[](CMenuTemplate& t) { return t.SetOutputBMPFile("o.bmp"); }, "OutputBmp", "o.bmp",
       [](CMenuTemplate& t) { CString v; return t.GetOutputBMPFile(&v) && v == "o.bmp"; }},
      {[](CMenuTemplate& t) { return t.SetOutMaskFile("k.bmp"); }, "OutMask", "k.bmp",
       [](CMenuTemplate& t) { CString v; return t.GetOutMaskFile(&v) && v == "k.bmp"; }},
      {[](CMenuTemplate& t) { return t.SetAddPrevButton(1); }, "AddPrevButton", "TRUE",
       [](CMenuTemplate& t) { int v = 0; return t.GetAddPrevButton(&v) && v == 1; }},
      {[](CMenuTemplate& t) { return t.SetAddNextButton(0); }, "AddNextButton", "FALSE",
       [](CMenuTemplate& t) { int v = 1; return t.GetAddNextButton(&v) && v == 0; }},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(1, row.set(tpl)) << row.key;
    EXPECT_EQ(row.text, Key("Background", row.key)) << row.key;
    EXPECT_TRUE(row.readsBack(tpl)) << row.key;
  }
}

TEST_F(PageSettings, SettersKeepTheirValueEvenWhenTheWriteFails) {
  tpl.SetBkBMPFileName("old.png");
  FailNthWrite(1);
  EXPECT_EQ(0, tpl.SetBkBMPFileName("new.png"));
  EXPECT_EQ("new.png", Inspect::BkBmpFileName(tpl));
  CString name;
  EXPECT_EQ(1, tpl.GetFileName(&name));
  EXPECT_EQ("old.png", name);
  EXPECT_EQ("new.png", Inspect::BkBmpFileName(tpl)) << "GetFileName keeps no copy";

  EXPECT_EQ(1, tpl.SetTemplateMode(5));
  EXPECT_EQ(5, Inspect::TemplateMode(tpl));
  int mode = 0;
  tpl.GetTemplateMode(&mode);
  EXPECT_EQ(5, Inspect::TemplateMode(tpl)) << "GetTemplateMode keeps no copy";
}

TEST_F(PageSettings, GettersKeepWhatTheyReadOnlyOnSuccess) {
  SetKey("Background", "BackgroundMusic", "hand.mp2");
  SetKey("Background", "MaximumNumberOfButton", "8");
  SetKey("Background", "CurrentNumberOfButton", "6");
  SetKey("Background", "OutputBmp", "hand.bmp");
  CString music, output;
  unsigned max = 0, current = 0;
  EXPECT_EQ(1, tpl.GetMusicFileName(&music));
  EXPECT_EQ(1, tpl.GetMaxNumOfButtons(&max));
  EXPECT_EQ(1, tpl.GetCurrentNumOfButtons(&current));
  EXPECT_EQ(1, tpl.GetOutputBMPFile(&output));
  EXPECT_EQ("hand.mp2", Inspect::MusicFileName(tpl));
  EXPECT_EQ(8u, Inspect::MaxNumOfButtons(tpl));
  EXPECT_EQ(6u, Inspect::CurrentNumOfButtons(tpl));
  EXPECT_EQ("hand.bmp", Inspect::OutputBmpFile(tpl));

  RemoveKey("Background", "CurrentNumberOfButton");
  current = 77;
  EXPECT_EQ(0, tpl.GetCurrentNumOfButtons(&current));
  EXPECT_EQ(77u, current);
  EXPECT_EQ(6u, Inspect::CurrentNumOfButtons(tpl));
}

TEST_F(PageSettings, CountsAreNotChecked) {
  EXPECT_EQ(1, tpl.SetMaxNumOfButtons(2));
  EXPECT_EQ(1, tpl.SetCurrentNumOfButtons(5));
  EXPECT_EQ(1, tpl.SetCurrentNumOfButtons(0));
}

TEST_F(BackgroundTitle, KeysAreWrittenInOrderWithTheirEncodings) {
  EXPECT_EQ(1, tpl.SetBkTitlePosition({-5, 40}));
  EXPECT_EQ(1, tpl.SetBkTitleFontStyle(7, 0, 1));
  EXPECT_EQ(1, tpl.SetBkTitleFontRGB(300, 128, 0));
  EXPECT_EQ(1, tpl.SetBkTitleFontSize(24));
  EXPECT_EQ("[Background]\r\n"
            "BackgroundTitlePosition_x=-5\r\nBackgroundTitlePosition_y=40\r\n"
            "BackgroundTitleFont_Italic=TRUE\r\nBackgroundTitleFont_Bold=FALSE\r\n"
            "BackgroundTitleFont_Underline=TRUE\r\n"
            "BackgroundTitleFont_R=300\r\nBackgroundTitleFont_G=128\r\nBackgroundTitleFont_B=0\r\n"
            "BackgroundTitleFont_Size=24\r\n",
            Bytes());
  tagPOINT pos{0, 0};
  int italic = 0, bold = 9, underline = 0;
  unsigned r = 0, g = 0, b = 9, size = 0;
  EXPECT_EQ(1, tpl.GetBkTitlePosition(&pos));
  EXPECT_EQ(1, tpl.GetBkTitleFontStyle(&italic, &bold, &underline));
  EXPECT_EQ(1, tpl.GetBkTitleFontRGB(&r, &g, &b));
  EXPECT_EQ(1, tpl.GetBkTitleFontSize(&size));
  EXPECT_EQ(-5, pos.x);
  EXPECT_EQ(40, pos.y);
  EXPECT_EQ(1, italic);
  EXPECT_EQ(0, bold);
  EXPECT_EQ(1, underline);
  EXPECT_EQ(300u, r);
  EXPECT_EQ(128u, g);
  EXPECT_EQ(0u, b);
  EXPECT_EQ(24u, size);
}

TEST_F(BackgroundTitle, GettersFillEverythingOrNothing) {
  tpl.SetBkTitlePosition({1, 2});
  tpl.SetBkTitleFontStyle(1, 1, 1);
  tpl.SetBkTitleFontRGB(1, 2, 3);
  RemoveKey("Background", "BackgroundTitlePosition_y");
  RemoveKey("Background", "BackgroundTitleFont_Underline");
  SetKey("Background", "BackgroundTitleFont_G", "default");
  tagPOINT pos{-1, -1};
  int italic = 5, bold = 5, underline = 5;
  unsigned r = 5, g = 5, b = 5;
  EXPECT_EQ(0, tpl.GetBkTitlePosition(&pos));
  EXPECT_EQ(0, tpl.GetBkTitleFontStyle(&italic, &bold, &underline));
  EXPECT_EQ(0, tpl.GetBkTitleFontRGB(&r, &g, &b));
  EXPECT_EQ(-1, pos.x);
  EXPECT_EQ(-1, pos.y);
  EXPECT_TRUE(italic == 5 && bold == 5 && underline == 5);
  EXPECT_TRUE(r == 5 && g == 5 && b == 5);
}

TEST_F(BackgroundTitle, SettersStopAtTheFirstFailedWrite) {
  tpl.SetBkTitleFontRGB(9, 9, 9);
  FailNthWrite(2);
  EXPECT_EQ(0, tpl.SetBkTitleFontRGB(1, 2, 3));
  EXPECT_EQ("1", Key("Background", "BackgroundTitleFont_R"));
  EXPECT_EQ("9", Key("Background", "BackgroundTitleFont_G"));
  EXPECT_EQ("9", Key("Background", "BackgroundTitleFont_B"));

  FailNthWrite(3);
  EXPECT_EQ(0, tpl.SetBkTitleFontStyle(1, 1, 1));
  EXPECT_EQ("TRUE", Key("Background", "BackgroundTitleFont_Italic"));
  EXPECT_EQ("TRUE", Key("Background", "BackgroundTitleFont_Bold"));
  EXPECT_EQ(std::nullopt, Key("Background", "BackgroundTitleFont_Underline"));
}

TEST_F(BackgroundTitle, OnlyASuccessfulGetBkTitleIsKept) {
  tpl.SetBkTitle("First");
  CString title;
  EXPECT_EQ(1, tpl.GetBkTitle(&title));
  EXPECT_EQ("First", Inspect::BkTitle(tpl));
  tpl.SetBkTitle("default");
  title = "mine";
  EXPECT_EQ(0, tpl.GetBkTitle(&title));
  EXPECT_EQ("mine", title);
  EXPECT_EQ("First", Inspect::BkTitle(tpl)) << "neither the setter nor a failed read change it";
  tpl.SetBkTitle("");
  EXPECT_EQ(1, tpl.GetBkTitle(&title));
  EXPECT_EQ("", title);
  EXPECT_EQ("", Inspect::BkTitle(tpl));
}

TEST_F(BackgroundTitle, NullOutPointersAreRefused) {
  tpl.SetBkTitle("x");
  tpl.SetBkTitleFontStyle(1, 1, 1);
  tpl.SetMaxNumOfButtons(3);
  int a = 7, b = 7;
  EXPECT_EQ(0, tpl.GetBkTitle(nullptr));
  EXPECT_EQ(0, tpl.GetBkTitlePosition(nullptr));
  EXPECT_EQ(0, tpl.GetBkTitleFontStyle(&a, nullptr, &b));
  EXPECT_EQ(0, tpl.GetMaxNumOfButtons(nullptr));
  EXPECT_TRUE(a == 7 && b == 7) << "nothing is stored when one pointer is NULL";
}

}  // namespace
}  // namespace tolvex::test
