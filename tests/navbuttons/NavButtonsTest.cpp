#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using NavButtons = TemplateFileTest;

TEST_F(NavButtons, PreviousButtonPositionGoesToItsSectionEdgeByEdge) {
  EXPECT_EQ(1, tpl.SetNavBtnPosition(0, {10, 20, 110, 70}));
  EXPECT_EQ("[PrevButton]\r\n"
            "ButtonPrevButtonPosition_left=10\r\nButtonPrevButtonPosition_right=110\r\n"
            "ButtonPrevButtonPosition_top=20\r\nButtonPrevButtonPosition_bottom=70\r\n",
            Bytes());
  tagRECT rect{};
  EXPECT_EQ(1, tpl.GetNavBtnPosition(0, &rect));
  EXPECT_EQ(10, rect.left);
  EXPECT_EQ(20, rect.top);
  EXPECT_EQ(110, rect.right);
  EXPECT_EQ(70, rect.bottom);
  EXPECT_EQ(0, tpl.GetNavBtnPosition(1, &rect)) << "the next button has none";
}

TEST_F(NavButtons, EveryPropertyOfTheNextButtonRoundTrips) {
  EXPECT_EQ(1, tpl.SetNavBtnPosition(1, {-5, 9, -50, 3}));
  EXPECT_EQ(1, tpl.SetNavInfo(1, 4294967295u, 7));
  EXPECT_EQ(1, tpl.SetNavBtnFrameSize(1, 3));
  EXPECT_EQ(1, tpl.SetNavBtnFrameRGB(1, 300, 0, 17));
  const std::string longName(1200, 'p');
  EXPECT_EQ(1, tpl.SetNavBtnFrameBMP(1, longName.c_str()));
  EXPECT_EQ(1, tpl.SetNavBtnBMPFile(1, ""));
  EXPECT_EQ("-1", Key("NextButton", "ButtonNextNavigationInfo_r"));
  EXPECT_EQ("300", Key("NextButton", "ButtonNextFrame_R"));
  EXPECT_EQ("3", Key("NextButton", "ButtonNextFrameThickness"));
  EXPECT_EQ("", Key("NextButton", "ButtonNextBmp"));

  tagRECT rect{};
  unsigned r = 0, c = 0, size = 0, red = 0, green = 1, blue = 0;
  CString frame, picture("x");
  EXPECT_EQ(1, tpl.GetNavBtnPosition(1, &rect));
  EXPECT_EQ(1, tpl.GetNavInfo(1, &r, &c));
  EXPECT_EQ(1, tpl.GetNavBtnFrameSize(1, &size));
  EXPECT_EQ(1, tpl.GetNavBtnFrameRGB(1, &red, &green, &blue));
  EXPECT_EQ(1, tpl.GetNavBtnFrameBMP(1, &frame));
  EXPECT_EQ(1, tpl.GetNavBtnBMPFile(1, &picture));
  EXPECT_TRUE(rect.left == -5 && rect.top == 9 && rect.right == -50 && rect.bottom == 3);
  EXPECT_EQ(4294967295u, r);
  EXPECT_EQ(7u, c);
  EXPECT_EQ(3u, size);
  EXPECT_TRUE(red == 300 && green == 0 && blue == 17);
  EXPECT_EQ(longName.substr(0, 999), frame.GetString()) << "read with 1000 bytes";
  EXPECT_EQ("", picture);
  EXPECT_EQ(std::nullopt, Key("PrevButton", "ButtonPrevFrame_R"));
}

TEST_F(NavButtons, OtherSelectorsSucceedWithoutTouchingAnything) {
  tpl.SetNavBtnFrameSize(0, 4);
  const std::string before = Bytes();
  for (unsigned selector : {2u, 4294967295u}) {
    EXPECT_EQ(1, tpl.SetNavBtnFrameSize(selector, 9));
    EXPECT_EQ(1, tpl.SetNavBtnPosition(selector, {1, 2, 3, 4}));
    EXPECT_EQ(1, tpl.SetNavBtnBMPFile(selector, "x"));
    unsigned size = 77, r = 77, c = 77;
    tagRECT rect{7, 7, 7, 7};
    CString name("kept");
    EXPECT_EQ(1, tpl.GetNavBtnFrameSize(selector, &size));
    EXPECT_EQ(1, tpl.GetNavInfo(selector, &r, &c));
    EXPECT_EQ(1, tpl.GetNavBtnPosition(selector, &rect));
    EXPECT_EQ(1, tpl.GetNavBtnFrameBMP(selector, &name));
    EXPECT_TRUE(size == 77 && r == 77 && c == 77 && rect.left == 7 && name == "kept");
  }
  EXPECT_EQ(before, Bytes());
}

TEST_F(NavButtons, GetNavInfoStoresRBeforeItLooksAtC) {
  SetKey("NextButton", "ButtonNextNavigationInfo_r", "3");
  unsigned r = 0, c = 99;
  EXPECT_EQ(0, tpl.GetNavInfo(1, &r, &c));
  EXPECT_EQ(3u, r);
  EXPECT_EQ(99u, c);

  RemoveKey("NextButton", "ButtonNextNavigationInfo_r");
  SetKey("NextButton", "ButtonNextNavigationInfo_c", "4");
  r = 55;
  EXPECT_EQ(0, tpl.GetNavInfo(1, &r, &c));
  EXPECT_EQ(55u, r);
  EXPECT_EQ(99u, c);
}

TEST_F(NavButtons, PositionWriteStopsAtTheFirstFailureInEdgeOrder) {
  tpl.SetNavBtnPosition(0, {1, 1, 1, 1});
  FailNthWrite(3);
  EXPECT_EQ(0, tpl.SetNavBtnPosition(0, {10, 20, 30, 40}));
  EXPECT_EQ("10", Key("PrevButton", "ButtonPrevButtonPosition_left"));
  EXPECT_EQ("30", Key("PrevButton", "ButtonPrevButtonPosition_right"));
  EXPECT_EQ("1", Key("PrevButton", "ButtonPrevButtonPosition_top"));
  EXPECT_EQ("1", Key("PrevButton", "ButtonPrevButtonPosition_bottom"));
}

}  // namespace
}  // namespace tolvex::test
