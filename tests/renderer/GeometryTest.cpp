// Buttons at the far ends of the 32-bit range: the menu draws each frame on exactly the pixels
// the mask marks, both clipped to the page, with no overflow on the way (run under UBSan).
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <climits>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

TEST(Geometry, MenuFramesAndMaskRingsCoverTheSamePixelsAtExtremeCoordinates) {
  struct Case {
    Box box;
    int thickness;
    int pixels;  // how many pixels the frame covers on the 720 x 480 page
  };
  const Case cases[] = {
      {{INT_MIN, 100, INT_MAX, 200}, 4, 720 * 100 - 712 * 92},
      {{100, INT_MIN, 200, INT_MAX}, INT_MAX, 100 * 480},  // the ring fills the button
      {{-10, -10, 30, 30}, 3, 30 * 30 - 24 * 24},
      {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 2, 720 * 480 - 716 * 476},
      {{INT_MAX - 1, 0, INT_MAX, 10}, 4, 0},  // wholly off the page
      {{0, INT_MIN, 10, INT_MIN + 1}, 4, 0}};
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
    int frame = 0, differ = 0;
    for (size_t i = 0; i < menu.pixels.size(); ++i) {
      frame += menu.pixels[i] == kRed;
      differ += (menu.pixels[i] == kRed) != (mask.pixels[i] != kBlack);
    }
    EXPECT_EQ(frame, c.pixels) << c.box.left << "," << c.box.top;
    EXPECT_EQ(differ, 0) << c.box.left << "," << c.box.top;
  }
}

}  // namespace
}  // namespace tolvex::test
