#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "renderer/RenderTestSupport.h"
#include "support/MarkedAreas.h"

namespace tolvex::test {
namespace {

// The 8-connected areas of non-black pixels, by bounding box.
std::vector<Box> Areas(const Picture& p) {
  return MarkedAreas<Box>(p.width, p.height, [&](int x, int y) {
    return p.pixels[static_cast<size_t>(y) * p.width + x] != kBlack;
  });
}

// Whether every marked pixel lies in a marked square of 2 x 2: no line is thinner.
bool NoThinLines(const Picture& p) {
  auto marked = [&](int x, int y) {
    return x >= 0 && y >= 0 && x < p.width && y < p.height && p.At(x, y) != kBlack;
  };
  auto square = [&](int x, int y) {
    return marked(x, y) && marked(x + 1, y) && marked(x, y + 1) && marked(x + 1, y + 1);
  };
  for (int y = 0; y < p.height; ++y) {
    for (int x = 0; x < p.width; ++x) {
      if (marked(x, y) && !square(x, y) && !square(x - 1, y) && !square(x, y - 1) &&
          !square(x - 1, y - 1)) {
        return false;
      }
    }
  }
  return true;
}

TEST(Mask, OneColourOnRingsAtLeastTwoPixelsThickAndEveryButtonItsOwnArea) {
  TempDir dir;
  TestTemplate tpl(dir);
  WriteSolidPicture(dir.File("b.png"), 8, 8, Rgb{10, 200, 10});
  // A title in the open: marked, it would add areas.
  tpl.Page({{"NTSC", "FALSE"}, {"BackgroundBmp", "b.png"}, {"BackgroundTitle", "Title"},
            {"BackgroundTitlePosition_x", "250"}, {"BackgroundTitlePosition_y", "450"}});
  const Box a{560, 100, 660, 150}, b{560, 200, 660, 250}, clipped{680, 540, 800, 600};
  const std::vector<Box> boxes = {
      a, b, clipped, {-100, -100, -10, -10},                        // off the page: left out
      {10, 10, 60, 40},     {60, 10, 110, 40},   {110, 10, 160, 40},  // edge to edge
      {160, 40, 200, 80},                                            // at a corner
      {300, 10, 400, 60},   {380, 30, 480, 90},                      // overlapping
      {10, 200, 200, 400},  {50, 250, 150, 350},                     // one inside another
      {300, 250, 500, 300}, {380, 200, 420, 400},                    // crossing
  };
  tpl.Count(static_cast<int>(boxes.size()));
  for (size_t i = 0; i < boxes.size(); ++i) tpl.Button(static_cast<int>(i), boxes[i], 1);
  tpl.Key(0, "ButtonBmp", "b.png");
  tpl.Key(0, "ButtonTitle", "Play");
  tpl.Key(1, "ButtonFrameThickness", "5");
  tpl.Nav(false, {20, 450, 80, 490}, 0);
  ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);
  EXPECT_NE(ReadFile(tpl.path()).find("OutMask=menu_mask.bmp"), std::string::npos);
  EXPECT_EQ(ReadFile(dir.File("menu_mask.bmp"))[28], 24);  // uncompressed 24-bit
  const Picture p = Picture::Load(dir.File("menu_mask.bmp"));
  ASSERT_EQ(p.height, 576);
  const std::set<Rgb> colours(p.pixels.begin(), p.pixels.end());
  ASSERT_EQ(colours.size(), 2u);
  const Rgb mark = *colours.rbegin();
  // Outside the rectangle, as thick as the frame but 2 to 4 pixels; no picture, no title.
  EXPECT_EQ(CountPixels(p, Grow(a, 2), mark), Ring(Grow(a, 2), 2));
  EXPECT_EQ(CountPixels(p, a, mark), 0);

  const auto areas = Areas(p);
  EXPECT_EQ(areas.size(), boxes.size());  // less the one off the page, plus the previous button
  EXPECT_TRUE(NoThinLines(p));  // every ring at least two pixels thick
  // Closed along the page's edge, on the frame there.
  EXPECT_EQ(CountPixels(p, {718, 538, 720, 576}, mark), 2 * 38);
  EXPECT_EQ(CountPixels(p, {680, 574, 720, 576}, mark), 2 * 40);

  tpl.Page("OutMask", "no/folder/m.bmp");
  EXPECT_EQ(CreateMaskMenuBmp(tpl.path()), 0);
}

class MenuAndMask : public ::testing::Test {
 protected:
  MenuAndMask() : tpl(dir) {
    tpl.Page("NTSC", "TRUE");
    WriteSolidPicture(dir.File("bg.png"), 8, 8, kBackground);
    tpl.Page("BackgroundBmp", "bg.png");
  }
  void Render() {
    ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
    ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);
    menu = Picture::Load(dir.File("menu.bmp"));
    mask = Picture::Load(dir.File("menu_mask.bmp"));
    ASSERT_EQ(menu.pixels.size(), mask.pixels.size());
  }
  // How many pixels the mask marks where the menu shows `frame`.
  int MarkedOnColour(Rgb frame) const {
    int count = 0;
    for (size_t i = 0; i < menu.pixels.size(); ++i) {
      count += menu.pixels[i] == frame && mask.pixels[i] != kBlack;
    }
    return count;
  }
  static constexpr Rgb kBackground{20, 30, 90}, kFrame{255, 200, 0};
  TempDir dir;
  TestTemplate tpl;
  Picture menu, mask;
};

TEST_F(MenuAndMask, OutlineSurroundsTheDrawnFrameWithoutCoveringIt) {
  // Frames 0 to 9 pixels thick; the outlines are 2, 2, 3, 4 and 4 pixels outside them.
  const std::vector<std::pair<Box, int>> buttons = {
      {{60, 60, 200, 140}, 0},   {{260, 60, 400, 140}, 1}, {{460, 60, 600, 140}, 3},
      {{60, 220, 200, 300}, 4}, {{260, 220, 400, 300}, 9}};
  const std::vector<int> outline = {2, 2, 3, 4, 4};
  tpl.Count(5);
  for (size_t i = 0; i < buttons.size(); ++i) {
    tpl.Button(int(i), buttons[i].first, buttons[i].second, kFrame);
  }
  tpl.Nav(false, {60, 400, 156, 440}, 4, kFrame);  // frame and arrow in the frame colour
  tpl.Nav(true, {564, 400, 660, 440}, 4, kFrame);
  Render();
  EXPECT_EQ(MarkedOnColour(kFrame), 0);  // neither frame nor arrow under the highlight
  EXPECT_TRUE(NoThinLines(mask));

  // Each area is its button's frame, as the menu shows it, grown by the outline.
  std::vector<Box> areas = Areas(mask), expected;
  for (size_t i = 0; i < buttons.size(); ++i) {
    const Box& box = buttons[i].first;
    if (buttons[i].second > 0) {
      EXPECT_EQ(FindInk(menu, Grow(box, 1), kBackground, kFrame).bounds, box);
    }
    expected.push_back(Grow(box, outline[i]));
    EXPECT_EQ(CountPixels(mask, expected.back(), kWhite), Ring(expected.back(), outline[i])) << i;
  }
  expected.push_back(Grow(Box{60, 400, 156, 440}, 4));
  expected.push_back(Grow(Box{564, 400, 660, 440}, 4));
  std::sort(areas.begin(), areas.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(areas, expected);
}

TEST_F(MenuAndMask, WithoutRoomOutsideTheOutlineTakesTheFramesPlaceOnThatSide) {
  const Box a{100, 200, 200, 260}, b{206, 200, 306, 260};  // 6 apart: two outlines need 9
  const Box edge{0, 400, 80, 450};                          // on the page's left edge
  const Box c{500, 200, 600, 260}, d{608, 150, 700, 193};   // only their corners too near
  const Box e{100, 300, 140, 340}, solid{144, 300, 184, 340};
  tpl.Count(7);
  const std::pair<Box, int> buttons[] = {{a, 4}, {b, 4}, {edge, 2}, {c, 4},
                                         {d, 4}, {e, 2}, {solid, 2}};
  for (int i = 0; i < 7; ++i) tpl.Button(i, buttons[i].first, buttons[i].second, kFrame);
  tpl.Key(6, "ButtonFrameThickness", "2147483647");  // the frame fills the button
  Render();
  EXPECT_EQ(Areas(mask).size(), 7u);
  const std::pair<Box, int> marked[] = {
      {{144, 300, 164, 340}, 20 * 40}, {{164, 300, 184, 340}, 0},  // half the solid button
      // Facing sides: on the frames, and the gap between them left free.
      {{196, 200, 200, 260}, 4 * 60}, {{206, 200, 210, 260}, 4 * 60}, {{200, 190, 206, 270}, 0},
      // The far sides, outside as usual.
      {{96, 200, 100, 260}, 4 * 60}, {{100, 196, 200, 200}, 4 * 100},
      {{306, 200, 310, 260}, 4 * 60},
      // At the page's edge: the frame's own two columns, and the outline closed round the corner.
      {{0, 400, 2, 450}, 2 * 50}, {{0, 398, 82, 400}, 2 * 82}, {{2, 400, 80, 450}, 0},
      // Where only the corners would meet, the upright sides next to them lie on the frames,
      // the tops still outside.
      {{596, 200, 600, 260}, 4 * 60}, {{608, 150, 612, 193}, 4 * 43}, {{600, 146, 608, 264}, 0},
      {{500, 196, 600, 200}, 4 * 100}, {{608, 193, 700, 197}, 4 * 92}};
  for (const auto& [box, count] : marked) EXPECT_EQ(CountPixels(mask, box, kWhite), count) << box;
}

}  // namespace
}  // namespace tolvex::test
