#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

// The 8-connected areas of non-black pixels, by bounding box.
std::vector<Box> Areas(const Picture& p) {
  std::vector<char> seen(p.pixels.size(), 0);
  std::vector<Box> areas;
  for (size_t start = 0; start < seen.size(); ++start) {
    if (seen[start] || p.pixels[start] == kBlack) continue;
    Box& b = areas.emplace_back(Box{p.width, p.height, 0, 0});
    std::vector<std::pair<int, int>> todo{{int(start % p.width), int(start / p.width)}};
    while (!todo.empty()) {
      const auto [x, y] = todo.back();
      todo.pop_back();
      if (x < 0 || y < 0 || x >= p.width || y >= p.height) continue;
      const size_t i = static_cast<size_t>(y) * p.width + x;
      if (seen[i] || p.pixels[i] == kBlack) continue;
      seen[i] = 1;
      b = {std::min(b.left, x), std::min(b.top, y), std::max(b.right, x + 1),
           std::max(b.bottom, y + 1)};
      for (int d = 0; d < 9; ++d) todo.emplace_back(x + d % 3 - 1, y + d / 3 - 1);
    }
  }
  return areas;
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
  tpl.Page("NTSC", "FALSE");
  WriteSolidPicture(dir.File("b.png"), 8, 8, Rgb{10, 200, 10});
  tpl.Page("BackgroundBmp", "b.png");
  tpl.Page("BackgroundTitle", "Title");  // in the open: marked, it would add areas
  tpl.Page("BackgroundTitlePosition_x", "250");
  tpl.Page("BackgroundTitlePosition_y", "450");
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
  EXPECT_EQ(CountPixels(p, a, mark), Ring(a, 2));  // no picture, no title
  EXPECT_EQ(CountPixels(p, b, mark), Ring(b, 5));

  const auto areas = Areas(p);
  EXPECT_EQ(areas.size(), boxes.size());  // less the one off the page, plus the previous button
  EXPECT_TRUE(NoThinLines(p));  // every ring at least two pixels thick
  EXPECT_EQ(CountPixels(p, {718, 540, 720, 576}, mark), 2 * 36);  // closed along the page's edge

  tpl.Page("OutMask", "no/folder/m.bmp");
  EXPECT_EQ(CreateMaskMenuBmp(tpl.path()), 0);
}

}  // namespace
}  // namespace tolvex::test
