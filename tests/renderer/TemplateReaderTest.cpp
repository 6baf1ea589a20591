#include "renderer/TemplateReader.h"

#include <gtest/gtest.h>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

using render::Page;
using render::ReadPage;
using render::Status;

class TemplateReader : public ::testing::Test {
 protected:
  TemplateReader() : tpl(dir) { tpl.SetButtonCount(4); }
  Page Read() {
    Page page;
    EXPECT_EQ(ReadPage(tpl.path(), &page), Status::kOk);
    return page;
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(TemplateReader, ButtonsInIndexOrderWithNamesFromTheTemplatesFolder) {
  tpl.SetButtonRect(10, {0, 0, 5, 5});
  tpl.SetButtonRect(-1, {1, 1, 5, 5});
  tpl.SetButtonRect(2, {50, 60, 10, 20});  // edges the wrong way round
  tpl.SetButtonKey(2, "ButtonBmp", "pics/b.png");
  tpl.SetButtonKey(2, "ButtonFrameBmp", "/abs/f.png");
  tpl.SetNavButton(true, {7, 7, 9, 9}, 1, kWhite);
  const Page page = Read();
  ASSERT_EQ(page.buttons.size(), 4u);
  EXPECT_EQ(page.buttons[0].rect.left, 1);
  EXPECT_EQ(page.buttons[1].rect.left, 10);
  EXPECT_EQ(page.buttons[1].rect.right, 50);
  EXPECT_EQ(page.buttons[1].rect.top, 20);
  EXPECT_EQ(page.buttons[1].rect.bottom, 60);
  EXPECT_EQ(page.buttons[1].picture, dir.File("pics/b.png"));
  EXPECT_EQ(page.buttons[1].framePicture, "/abs/f.png");
  EXPECT_EQ(page.buttons[2].rect.right, 5);
  EXPECT_EQ(page.buttons[3].rect.left, 7);  // the next button comes last
}

TEST_F(TemplateReader, ValuesOutOfRangeAreClampedAndMissingOnesDefaulted) {
  tpl.SetButtonRect(1, {0, 0, 100, 100});
  tpl.SetButtonKey(1, "ButtonFrame_R", "-1");  // 4294967295 as the application stores it
  tpl.SetButtonKey(1, "ButtonFrame_G", "300");
  tpl.SetButtonKey(1, "ButtonFrame_B", "7");
  tpl.SetButtonKey(1, "ButtonFrameThickness", "-4");
  tpl.SetButtonKey(1, "ButtonTitle", "Go");
  tpl.SetButtonKey(1, "ButtonTitleFont_Size", "100000");
  tpl.SetButtonKey(1, "ButtonTitlePosition1_x", "3");  // no _y: no position
  tpl.SetBackground("BackgroundTitle", "default");     // reads as missing
  const Page page = Read();
  EXPECT_EQ(page.height, 576);
  EXPECT_TRUE(page.background.empty());
  EXPECT_TRUE(page.title.text.empty());
  ASSERT_EQ(page.buttons.size(), 1u);
  const auto& b = page.buttons[0];
  EXPECT_EQ(b.frameColour.r, 255);
  EXPECT_EQ(b.frameColour.g, 255);
  EXPECT_EQ(b.frameColour.b, 7);
  EXPECT_EQ(b.frameThickness, 0);
  EXPECT_EQ(b.title.text, "Go");
  EXPECT_EQ(b.title.sizePx, render::kMaxTitleSizePx);
  EXPECT_FALSE(b.title.hasPosition);
}

TEST_F(TemplateReader, ATemplateWithoutBackgroundIsNoTemplate) {
  Page page;
  TestTemplate other(dir, "other.ini");
  other.Set("NumOfButton1", "ButtonPosition0_left", "1");
  EXPECT_EQ(ReadPage(other.path(), &page), Status::kTemplateUnreadable);
  EXPECT_EQ(ReadPage(dir.File("none.ini"), &page), Status::kTemplateUnreadable);
}

}  // namespace
}  // namespace tolvex::test
