#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using PageSettings = TemplateFileTest;
using BackgroundTitle = TemplateFileTest;
using Inspect = CMenuTemplateInspector;

TEST_F(PageSettings, EachSetterWritesItsKeyAndItsGetterReadsItBack) {
  EXPECT_TRUE(tpl.SetTemplateMode(2) && tpl.SetBkBMPFileName("bg.png") &&
              tpl.SetMusicFileName("m.mp2") && tpl.SetMaxNumOfButtons(2) &&
              tpl.SetCurrentNumOfButtons(5) && tpl.SetOutputBMPFile("o.bmp") &&
              tpl.SetOutMaskFile("k.bmp") && tpl.SetAddPrevButton(1) && tpl.SetAddNextButton(0));
  EXPECT_EQ("[Background]\r\nNTSC=TRUE\r\nBackgroundBmp=bg.png\r\nBackgroundMusic=m.mp2\r\n"
            "MaximumNumberOfButton=2\r\nCurrentNumberOfButton=5\r\nOutputBmp=o.bmp\r\n"
            "OutMask=k.bmp\r\nAddPrevButton=TRUE\r\nAddNextButton=FALSE\r\n",
            Bytes());
  int mode = 9, prev = 9, next = 9;
  unsigned max = 0, current = 0;
  CString bmp, music, output, mask;
  EXPECT_TRUE(tpl.GetTemplateMode(&mode) && tpl.GetFileName(&bmp) &&
              tpl.GetMusicFileName(&music) && tpl.GetMaxNumOfButtons(&max) &&
              tpl.GetCurrentNumOfButtons(&current) && tpl.GetOutputBMPFile(&output) &&
              tpl.GetOutMaskFile(&mask) && tpl.GetAddPrevButton(&prev) &&
              tpl.GetAddNextButton(&next));
  EXPECT_TRUE(mode == 1 && max == 2 && current == 5 && prev == 1 && next == 0);
  EXPECT_TRUE(bmp == "bg.png" && music == "m.mp2" && output == "o.bmp" && mask == "k.bmp");
}

TEST_F(PageSettings, CachedValuesFollowSettersAlwaysAndGettersOnlyOnSuccess) {
  tpl.SetBkBMPFileName("old.png");
  FailNthWrite(1);
  EXPECT_EQ(0, tpl.SetBkBMPFileName("new.png"));
  EXPECT_EQ("new.png", Inspect::BkBmpFileName(tpl)) << "stored before the write";
  CString name;
  EXPECT_EQ(1, tpl.GetFileName(&name));
  EXPECT_EQ("old.png", name);
  EXPECT_EQ("new.png", Inspect::BkBmpFileName(tpl)) << "GetFileName keeps no copy";
  tpl.SetTemplateMode(5);
  int mode = 0;
  tpl.GetTemplateMode(&mode);
  EXPECT_EQ(5, Inspect::TemplateMode(tpl)) << "kept as given; GetTemplateMode keeps no copy";

  SetKey("Background", "BackgroundMusic", "hand.mp2");
  SetKey("Background", "CurrentNumberOfButton", "6");
  CString music;
  unsigned current = 0;
  EXPECT_EQ(1, tpl.GetMusicFileName(&music));
  EXPECT_EQ(1, tpl.GetCurrentNumOfButtons(&current));
  EXPECT_EQ("hand.mp2", Inspect::MusicFileName(tpl));
  EXPECT_EQ(6u, Inspect::CurrentNumOfButtons(tpl));
  RemoveKey("Background", "CurrentNumberOfButton");
  current = 77;
  EXPECT_EQ(0, tpl.GetCurrentNumOfButtons(&current));
  EXPECT_EQ(77u, current);
  EXPECT_EQ(6u, Inspect::CurrentNumOfButtons(tpl));
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
  EXPECT_TRUE(pos.x == -5 && pos.y == 40);
  EXPECT_TRUE(italic == 1 && bold == 0 && underline == 1);
  EXPECT_TRUE(r == 300 && g == 128 && b == 0 && size == 24);
}

TEST_F(BackgroundTitle, GettersFillEverythingOrNothing) {
  tpl.SetBkTitleFontStyle(1, 1, 1);
  tpl.SetBkTitleFontRGB(1, 2, 3);
  RemoveKey("Background", "BackgroundTitleFont_Underline");
  SetKey("Background", "BackgroundTitleFont_G", "default");
  int italic = 5, bold = 5, underline = 5;
  unsigned r = 5, g = 5, b = 5;
  EXPECT_EQ(0, tpl.GetBkTitleFontStyle(&italic, &bold, &underline));
  EXPECT_EQ(0, tpl.GetBkTitleFontRGB(&r, &g, &b));
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

}  // namespace
}  // namespace tolvex::test
