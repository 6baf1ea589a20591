#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <set>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

// The 8-connected areas of non-black pixels, by bounding box.
std::vector<Box> Areas(const Picture& p) {
  const int w = p.Width(), h = p.Height();
  std::vector<char> seen(static_cast<size_t>(w) * h, 0);
  std::vector<Box> areas;
  for (int y0 = 0; y0 < h; ++y0) {
    for (int x0 = 0; x0 < w; ++x0) {
      if (p.At(x0, y0) == kBlack || seen[y0 * w + x0]) continue;
      Box box{x0, y0, x0 + 1, y0 + 1};
      std::vector<std::pair<int, int>> todo{{x0, y0}};
      seen[y0 * w + x0] = 1;
      while (!todo.empty()) {
        const auto [x, y] = todo.back();
        todo.pop_back();
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
               std::max(box.bottom, y + 1)};
        for (int ny = std::max(y - 1, 0); ny <= std::min(y + 1, h - 1); ++ny) {
          for (int nx = std::max(x - 1, 0); nx <= std::min(x + 1, w - 1); ++nx) {
            if (p.At(nx, ny) == kBlack || seen[ny * w + nx]) continue;
            seen[ny * w + nx] = 1;
            todo.push_back({nx, ny});
          }
        }
      }
      areas.push_back(box);
    }
  }
  return areas;
}

// How many marked pixels follow each other from (x, y) in steps of (dx, dy).
int MarkedRun(const Picture& p, int x, int y, int dx, int dy) {
  int n = 0;
  for (; x >= 0 && y >= 0 && x < p.Width() && y < p.Height() && p.At(x, y) != kBlack; ++n) {
    x += dx, y += dy;
  }
  return n;
}

int Ring(Box b, int t) {
  const int w = b.right - b.left, h = b.bottom - b.top;
  return w * h - (w - 2 * t) * (h - 2 * t);
}

class Mask : public ::testing::Test {
 protected:
  Mask() : tpl(dir) { tpl.Page("NTSC", "TRUE"); }
  Picture Render() {
    EXPECT_NE(CreateMaskMenuBmp(tpl.path()), 0);
    return Picture::Load(dir.File("menu_mask.bmp"));
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(Mask, OneMarkingColourOnTheRingsOnly) {
  WriteSolidPicture(dir.File("b.png"), 8, 8, Rgb{10, 200, 10});
  tpl.Page("BackgroundBmp", "b.png");
  tpl.Page("BackgroundTitle", "Title");
  const Box a{100, 100, 200, 150}, b{300, 100, 400, 150}, prev{20, 400, 80, 440};
  tpl.Count(2);
  tpl.Button(0, a, 1, Rgb{255, 0, 0});  // thinner than the least ring, 2 pixels
  tpl.Key(0, "ButtonBmp", "b.png");
  tpl.Key(0, "ButtonTitle", "Play");
  tpl.Button(1, b, 5, Rgb{0, 0, 255});
  tpl.Nav(false, prev, 0);
  const Picture p = Render();
  ASSERT_EQ(p.Height(), 480);
  EXPECT_EQ(ReadFile(dir.File("menu_mask.bmp"))[28], 24);  // uncompressed 24-bit
  EXPECT_EQ(tpl.Get("Background", "OutMask"), "menu_mask.bmp");

  std::set<std::tuple<int, int, int>> colours;
  for (int y = 0; y < 480; ++y) {
    for (int x = 0; x < 720; ++x) colours.insert({p.At(x, y).r, p.At(x, y).g, p.At(x, y).b});
  }
  ASSERT_EQ(colours.size(), 2u);
  EXPECT_EQ(*colours.begin(), std::make_tuple(0, 0, 0));
  const Rgb mark{uint8_t(std::get<0>(*colours.rbegin())), uint8_t(std::get<1>(*colours.rbegin())),
                 uint8_t(std::get<2>(*colours.rbegin()))};
  EXPECT_EQ(CountPixels(p, a, mark), Ring(a, 2));
  EXPECT_EQ(CountPixels(p, b, mark), Ring(b, 5));
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, mark), Ring(a, 2) + Ring(b, 5) + Ring(prev, 2));
}

TEST_F(Mask, TouchingOverlappingAndNestedButtonsStaySeparateRings) {
  const std::vector<Box> boxes = {
      {10, 10, 60, 40},     {60, 10, 110, 40},   {110, 10, 160, 40},  // edge to edge
      {160, 40, 200, 80},                                            // at a corner
      {300, 10, 400, 60},   {380, 30, 480, 90},                      // overlapping
      {10, 200, 200, 400},  {50, 250, 150, 350},                     // one inside another
      {300, 250, 500, 300}, {380, 200, 420, 400},                    // crossing
  };
  tpl.Count(static_cast<int>(boxes.size()));
  for (size_t i = 0; i < boxes.size(); ++i) tpl.Button(static_cast<int>(i), boxes[i], 1);
  const Picture p = Render();
  const auto areas = Areas(p);
  EXPECT_EQ(areas.size(), boxes.size());
  for (const Box& a : areas) {  // each a ring at least two pixels thick on all sides
    const int midX = (a.left + a.right) / 2, midY = (a.top + a.bottom) / 2;
    EXPECT_GE(MarkedRun(p, a.left, midY, 1, 0), 2) << a.left << "," << a.top;
    EXPECT_GE(MarkedRun(p, a.right - 1, midY, -1, 0), 2) << a.left << "," << a.top;
    EXPECT_GE(MarkedRun(p, midX, a.top, 0, 1), 2) << a.left << "," << a.top;
    EXPECT_GE(MarkedRun(p, midX, a.bottom - 1, 0, -1), 2) << a.left << "," << a.top;
  }
}

TEST_F(Mask, ButtonsOffThePageLeftOutAndClippedOnesClosedAlongItsEdge) {
  tpl.Page("NTSC", "FALSE");
  tpl.Page("OutMask", "highlight.bmp");
  tpl.Count(2);
  tpl.Button(0, {-100, -100, -10, -10}, 2);
  tpl.Button(1, {680, 540, 800, 600}, 2);
  ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);
  const Picture p = Picture::Load(dir.File("highlight.bmp"));
  ASSERT_EQ(p.Height(), 576);
  const auto areas = Areas(p);
  ASSERT_EQ(areas.size(), 1u);
  EXPECT_EQ(std::tie(areas[0].left, areas[0].top, areas[0].right, areas[0].bottom),
            std::make_tuple(680, 540, 720, 576));
  EXPECT_EQ(MarkedRun(p, 719, 560, -1, 0), 2);

  tpl.Page("OutMask", "no/folder/m.bmp");
  EXPECT_EQ(CreateMaskMenuBmp(tpl.path()), 0);
}

}  // namespace
}  // namespace tolvex::test
