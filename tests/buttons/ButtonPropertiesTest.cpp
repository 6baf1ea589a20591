#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using ButtonProperties = ButtonTemplateTest;

TEST_F(ButtonProperties, GeometryKeysAreWrittenInOrder) {
  tpl.SetCurrentNumOfButtons(2);
  const std::string before = Bytes();
  EXPECT_EQ(1, tpl.SetBtnPosition(1, {10, 20, 110, 70}));
  EXPECT_EQ(1, tpl.SetBtnFrameRGB(1, 300, 0, 4294967295u));
  EXPECT_EQ(before +
                "[NumOfButton2]\r\n"
                "ButtonPosition1_left=10\r\nButtonPosition1_right=110\r\n"
                "ButtonPosition1_top=20\r\nButtonPosition1_bottom=70\r\n"
                "ButtonFrame_R1=300\r\nButtonFrame_G1=0\r\nButtonFrame_B1=-1\r\n",
            Bytes());
  tagRECT rect{};
  unsigned red = 0, green = 1, blue = 0;
  EXPECT_EQ(1, tpl.GetBtnPosition(1, &rect));
  EXPECT_EQ(1, tpl.GetBtnFrameRGB(1, &red, &green, &blue));
  EXPECT_TRUE(rect.left == 10 && rect.top == 20 && rect.right == 110 && rect.bottom == 70);
  EXPECT_TRUE(red == 300 && green == 0 && blue == 4294967295u);
}

TEST_F(ButtonProperties, TitleKeysAreWrittenWithTheirEncodings) {
  EXPECT_EQ(1, tpl.SetBtnTitle(2, "Chapter 2"));
  EXPECT_EQ(1, tpl.SetBtnTitlePosition(2, {120, -8}));
  EXPECT_EQ(1, tpl.SetBtnTitleFontName(2, "DejaVu Sans"));
  EXPECT_EQ(1, tpl.SetBtnTitleFontSize(2, 18));
  EXPECT_EQ(1, tpl.SetBtnTitleFontStyle(2, 5, 0, -1));
  EXPECT_EQ(1, tpl.SetBtnTitleFontRGB(2, 255, 128, 0));
  EXPECT_EQ("TRUE", Key("NumOfButton3", "ButtonTitleFont_Italic2"));
  EXPECT_EQ("FALSE", Key("NumOfButton3", "ButtonTitleFont_Bold2"));
  EXPECT_EQ("TRUE", Key("NumOfButton3", "ButtonTitleFont_Underline2"));
  EXPECT_EQ("-8", Key("NumOfButton3", "ButtonTitlePosition2_y"));
  EXPECT_EQ("128", Key("NumOfButton3", "ButtonTitleFont_G2"));

  CString title, font;
  tagPOINT pos{};
  unsigned size = 0, r = 0, g = 0, b = 1;
  int italic = 0, bold = 1, underline = 0;
  EXPECT_EQ(1, tpl.GetBtnTitle(2, &title));
  EXPECT_EQ(1, tpl.GetBtnTitlePosition(2, &pos));
  EXPECT_EQ(1, tpl.GetBtnTitleFontName(2, &font));
  EXPECT_EQ(1, tpl.GetBtnTitleFontSize(2, &size));
  EXPECT_EQ(1, tpl.GetBtnTitleFontStyle(2, &italic, &bold, &underline));
  EXPECT_EQ(1, tpl.GetBtnTitleFontRGB(2, &r, &g, &b));
  EXPECT_EQ("Chapter 2", title);
  EXPECT_TRUE(pos.x == 120 && pos.y == -8);
  EXPECT_EQ("DejaVu Sans", font);
  EXPECT_EQ(18u, size);
  EXPECT_TRUE(italic == 1 && bold == 0 && underline == 1);
  EXPECT_TRUE(r == 255 && g == 128 && b == 0);
}

TEST_F(ButtonProperties, EveryTextIsReadWithEightyBytes) {
  const std::string hundred(100, 'n');
  const std::string exact(79, 'e');
  tpl.SetBtnBMP(0, hundred.c_str());
  tpl.SetBtnFrameBMP(0, exact.c_str());
  tpl.SetBtnTitle(0, (exact + "!").c_str());
  tpl.SetBtnTitleFontName(0, hundred.c_str());
  EXPECT_EQ(hundred, Key("NumOfButton3", "ButtonBmp0")) << "written whole";
  CString picture, frame, title, font;
  EXPECT_EQ(1, tpl.GetBtnBMP(0, &picture));
  EXPECT_EQ(1, tpl.GetBtnFrameBMP(0, &frame));
  EXPECT_EQ(1, tpl.GetBtnTitle(0, &title));
  EXPECT_EQ(1, tpl.GetBtnTitleFontName(0, &font));
  EXPECT_EQ(hundred.substr(0, 79), picture.GetString());
  EXPECT_EQ(exact, frame.GetString());
  EXPECT_EQ(exact, title.GetString());
  EXPECT_EQ(hundred.substr(0, 79), font.GetString());
}

TEST_F(ButtonProperties, GettersFillEverythingOrNothing) {
  tpl.SetBtnPosition(4, {1, 2, 3, 4});
  tpl.SetBtnNavInfo(4, 1, 2);
  tpl.SetBtnTitle(4, "default");
  RemoveKey("NumOfButton3", "ButtonPosition4_top");
  RemoveKey("NumOfButton3", "ButtonNavigationInfo_c4");
  tagRECT rect{9, 9, 9, 9};
  unsigned r = 9, c = 9;
  CString title("kept");
  EXPECT_EQ(0, tpl.GetBtnPosition(4, &rect));
  EXPECT_EQ(0, tpl.GetBtnNavInfo(4, &r, &c)) << "unlike GetNavInfo, r is not stored either";
  EXPECT_EQ(0, tpl.GetBtnTitle(4, &title));
  EXPECT_TRUE(rect.left == 9 && rect.top == 9 && rect.right == 9 && rect.bottom == 9);
  EXPECT_TRUE(r == 9 && c == 9);
  EXPECT_EQ("kept", title);
}

TEST_F(ButtonProperties, SettersStopAtTheFirstFailedWrite) {
  FailNthWrite(2);
  EXPECT_EQ(0, tpl.SetBtnPosition(1, {10, 20, 30, 40}));
  EXPECT_EQ("10", Key("NumOfButton3", "ButtonPosition1_left"));
  EXPECT_EQ(std::nullopt, Key("NumOfButton3", "ButtonPosition1_right"));
  EXPECT_EQ(std::nullopt, Key("NumOfButton3", "ButtonPosition1_top"));
  EXPECT_EQ(std::nullopt, Key("NumOfButton3", "ButtonPosition1_bottom"));

  FailNthWrite(2);
  EXPECT_EQ(0, tpl.SetBtnNavInfo(0, 5, 6));
  EXPECT_EQ("5", Key("PrevButton", "ButtonNavigationInfo_r0"));
  EXPECT_EQ(std::nullopt, Key("PrevButton", "ButtonNavigationInfo_c0"));

}

TEST_F(ButtonProperties, NavInfoOfButtonsZeroAndOneIsWrittenBesideThePrevAndNextButtons) {
  tpl.SetNavInfo(0, 11, 12);
  tpl.SetNavInfo(1, 21, 22);
  EXPECT_EQ(1, tpl.SetBtnNavInfo(0, 2, 3));
  EXPECT_EQ(1, tpl.SetBtnNavInfo(1, 4, 5));
  EXPECT_EQ(1, tpl.SetBtnNavInfo(5, 6, 7));
  EXPECT_EQ("2", Key("PrevButton", "ButtonNavigationInfo_r0"));
  EXPECT_EQ("3", Key("PrevButton", "ButtonNavigationInfo_c0"));
  EXPECT_EQ("4", Key("NextButton", "ButtonNavigationInfo_r1"));
  EXPECT_EQ("5", Key("NextButton", "ButtonNavigationInfo_c1"));
  EXPECT_EQ("6", Key("NumOfButton3", "ButtonNavigationInfo_r5"));
  EXPECT_EQ(std::nullopt, Key("NumOfButton3", "ButtonNavigationInfo_r0"));

  unsigned r = 0, c = 0;
  EXPECT_EQ(1, tpl.GetNavInfo(0, &r, &c));
  EXPECT_TRUE(r == 11 && c == 12) << "the previous button's own pair is untouched";
  EXPECT_EQ(1, tpl.GetBtnNavInfo(5, &r, &c));
  EXPECT_TRUE(r == 6 && c == 7);
  r = c = 99;
  EXPECT_EQ(0, tpl.GetBtnNavInfo(0, &r, &c)) << "the getter reads the layout section";
  SetKey("NumOfButton3", "ButtonNavigationInfo_r1", "8");
  SetKey("NumOfButton3", "ButtonNavigationInfo_c1", "9");
  EXPECT_EQ(1, tpl.GetBtnNavInfo(1, &r, &c));
  EXPECT_TRUE(r == 8 && c == 9);
}

TEST_F(ButtonProperties, NullOutPointersAreRefusedInEveryFamily) {
  tpl.SetBtnNavInfo(3, 1, 2);
  tpl.SetNavInfo(0, 1, 2);
  tpl.SetBkTitleFontStyle(1, 1, 1);
  unsigned r = 7;
  int italic = 7;
  EXPECT_EQ(0, tpl.GetBtnNavInfo(3, &r, nullptr));
  EXPECT_EQ(0, tpl.GetNavInfo(0, &r, nullptr));
  EXPECT_EQ(0, tpl.GetBkTitleFontStyle(&italic, nullptr, &italic));
  EXPECT_EQ(0, tpl.GetBtnPosition(1, nullptr));
  EXPECT_EQ(0, tpl.GetTemplateFile(nullptr));
  EXPECT_TRUE(r == 7 && italic == 7);
}

}  // namespace
}  // namespace tolvex::test
