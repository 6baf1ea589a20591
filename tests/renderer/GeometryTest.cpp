// Buttons at the far ends of the 32-bit range: the menu's frame and the mask's outline are
// both clipped to the page, the outline lying outside the frame except along the page's edge,
// with no overflow on the way (run under UBSan).
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <climits>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

TEST(Geometry, MenuFramesAndMaskOutlinesClippedToThePageAtExtremeCoordinates) {
  struct Case {
    Box box;
    int thickness;
    int pixels;  // how many pixels the frame covers on the 720 x 480 page
    Box outer, hole;  // the mask's outline covers outer less hole
  };
  const Case cases[] = {
      {{INT_MIN, 100, INT_MAX, 200}, 4, 720 * 100 - 712 * 92, {0, 96, 720, 204},
       {4, 100, 716, 200}},
      // The ring fills the button; on the frame, the outline is at most half the button.
      {{100, INT_MIN, 200, INT_MAX}, INT_MAX, 100 * 480, {96, 0, 204, 480}, {100, 50, 200, 430}},
      // An odd-sized button: the ring is half of it rounded up, so it fills the middle line.
      {{100, 100, 131, 141}, INT_MAX, 31 * 41, {96, 96, 135, 145}, {100, 100, 131, 141}},
      {{INT_MAX - 1, 0, INT_MAX, 10}, 4, 0, {0, 0, 0, 0}, {0, 0, 0, 0}}};  // wholly off the page
  for (const Case& c : cases) {
    TempDir dir;
    TestTemplate tpl(dir);
    tpl.Page("NTSC", "TRUE");
    tpl.Count(1);
    tpl.Button(1, c.box, c.thickness, kRed);
    ASSERT_NE(CreateMenuBmp(tpl.path()), 0) << TolvexMenuBmpLastError();
    ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0) << TolvexMenuMaskLastError();
    const Picture menu = Picture::Load(dir.File("menu.bmp"));
    const Picture mask = Picture::Load(dir.File("menu_mask.bmp"));
    ASSERT_EQ(menu.pixels.size(), mask.pixels.size());
    EXPECT_EQ(CountPixels(menu, {0, 0, 720, 480}, kRed), c.pixels) << c.box.left;
    auto area = [](Box b) { return (b.right - b.left) * (b.bottom - b.top); };
    const int outline = area(c.outer) - area(c.hole);
    EXPECT_EQ(CountPixels(mask, {0, 0, 720, 480}, kWhite), outline) << c.box.left;
    EXPECT_EQ(CountPixels(mask, c.outer, kWhite), outline) << c.box.left;
    EXPECT_EQ(CountPixels(mask, c.hole, kWhite), 0) << c.box.left;
  }
}

}  // namespace
}  // namespace tolvex::test
