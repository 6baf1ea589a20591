#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

// The 8-connected areas of non-black pixels, by bounding box and size.
struct Area {
  Box box;
  int pixels;
};

std::vector<Area> Areas(const Picture& p) {
  std::vector<int> seen(static_cast<size_t>(p.Width()) * p.Height(), 0);
  std::vector<Area> areas;
  for (int y = 0; y < p.Height(); ++y) {
    for (int x = 0; x < p.Width(); ++x) {
      if (p.At(x, y) == kBlack || seen[y * p.Width() + x]) continue;
      Area a{{x, y, x + 1, y + 1}, 0};
      std::vector<std::pair<int, int>> todo{{x, y}};
      seen[y * p.Width() + x] = 1;
      while (!todo.empty()) {
        const auto [cx, cy] = todo.back();
        todo.pop_back();
        ++a.pixels;
        a.box = {std::min(a.box.left, cx), std::min(a.box.top, cy), std::max(a.box.right, cx + 1),
                 std::max(a.box.bottom, cy + 1)};
        for (int dy = -1; dy <= 1; ++dy) {
          for (int dx = -1; dx <= 1; ++dx) {
            const int nx = cx + dx, ny = cy + dy;
            if (nx < 0 || ny < 0 || nx >= p.Width() || ny >= p.Height()) continue;
            if (p.At(nx, ny) == kBlack || seen[ny * p.Width() + nx]) continue;
            seen[ny * p.Width() + nx] = 1;
            todo.push_back({nx, ny});
          }
        }
      }
      areas.push_back(a);
    }
  }
  return areas;
}

std::set<std::tuple<int, int, int>> Colours(const Picture& p) {
  std::set<std::tuple<int, int, int>> colours;
  for (int y = 0; y < p.Height(); ++y) {
    for (int x = 0; x < p.Width(); ++x) {
      const Rgb c = p.At(x, y);
      colours.insert({c.r, c.g, c.b});
    }
  }
  return colours;
}

// How many marked pixels follow each other from (x, y) in steps of (dx, dy).
int MarkedRun(const Picture& p, int x, int y, int dx, int dy) {
  int n = 0;
  for (; x >= 0 && y >= 0 && x < p.Width() && y < p.Height() && p.At(x, y) != kBlack; ++n) {
    x += dx;
    y += dy;
  }
  return n;
}

bool Inside(const Box& inner, const Box& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

class Mask : public ::testing::Test {
 protected:
  Mask() : tpl(dir) {
    tpl.SetBackground("NTSC", "TRUE");
    tpl.SetButtonCount(2);
  }

  Picture Render() {
    EXPECT_NE(CreateMaskMenuBmp(tpl.c_path()), 0);
    return Picture::Load(dir.File("menu_mask.bmp"));
  }

  TempDir dir;
  TestTemplate tpl;
};

TEST_F(Mask, OneMarkingColourOnRingsOnlyWithoutPicturesOrText) {
  WriteSolidPicture(dir.File("bg.png"), 8, 8, Rgb{200, 10, 10});
  WriteSolidPicture(dir.File("b.png"), 8, 8, Rgb{10, 200, 10});
  tpl.SetBackground("BackgroundBmp", "bg.png");
  tpl.SetBackground("BackgroundTitle", "Title");
  tpl.SetButtonRect(0, {100, 100, 200, 150});
  tpl.SetButtonFrame(0, 1, Rgb{255, 0, 0});  // thinner than the least ring: 2 pixels
  tpl.SetButtonKey(0, "ButtonBmp", "b.png");
  tpl.SetButtonKey(0, "ButtonTitle", "Play");
  tpl.SetButtonRect(1, {300, 100, 400, 150});
  tpl.SetButtonFrame(1, 5, Rgb{0, 0, 255});
  tpl.SetNavButton(false, {20, 400, 80, 440}, 0, kWhite);
  tpl.SetNavButton(true, {640, 400, 700, 440}, 3, kWhite);
  const Picture p = Render();
  ASSERT_TRUE(p.Valid());
  EXPECT_EQ(p.Width(), 720);
  EXPECT_EQ(p.Height(), 480);
  const std::string bytes = ReadFile(dir.File("menu_mask.bmp"));
  EXPECT_EQ(bytes[28], 24);  // uncompressed 24-bit
  EXPECT_EQ(bytes[30], 0);

  const auto colours = Colours(p);
  ASSERT_EQ(colours.size(), 2u);
  EXPECT_EQ(*colours.begin(), std::make_tuple(0, 0, 0));
  const auto [r, g, b] = *colours.rbegin();
  const Rgb mark{uint8_t(r), uint8_t(g), uint8_t(b)};

  const auto ring = [](Box box, int t) {
    const int w = box.right - box.left, h = box.bottom - box.top;
    return w * h - (w - 2 * t) * (h - 2 * t);
  };
  EXPECT_EQ(CountPixels(p, {100, 100, 200, 150}, mark), ring({100, 100, 200, 150}, 2));
  EXPECT_EQ(CountPixels(p, {300, 100, 400, 150}, mark), ring({300, 100, 400, 150}, 5));
  EXPECT_EQ(CountPixels(p, {20, 400, 80, 440}, mark), ring({20, 400, 80, 440}, 2));
  EXPECT_EQ(CountPixels(p, {640, 400, 700, 440}, mark), ring({640, 400, 700, 440}, 3));
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, mark),
            ring({100, 100, 200, 150}, 2) + ring({300, 100, 400, 150}, 5) +
                ring({20, 400, 80, 440}, 2) + ring({640, 400, 700, 440}, 3));
  EXPECT_EQ(Areas(p).size(), 4u);
}

TEST_F(Mask, TouchingAndOverlappingButtonsStaySeparateAreas) {
  // A row of buttons edge to edge, one touching only at a corner, one overlapping another,
  // one inside another, and two crossing each other.
  const std::vector<Box> boxes = {
      {10, 10, 60, 40},    {60, 10, 110, 40},   {110, 10, 160, 40},  // edge to edge
      {160, 40, 200, 80},                                           // corner of the last
      {300, 10, 400, 60},  {380, 30, 480, 90},                      // overlapping
      {10, 200, 200, 400}, {50, 250, 150, 350},                     // one inside the other
      {300, 250, 500, 300}, {380, 200, 420, 400},                   // crossing
  };
  tpl.SetButtonCount(static_cast<int>(boxes.size()));
  for (size_t i = 0; i < boxes.size(); ++i) {
    tpl.SetButtonRect(static_cast<int>(i), boxes[i]);
    tpl.SetButtonFrame(static_cast<int>(i), 1, kWhite);
  }
  const Picture p = Render();
  ASSERT_TRUE(p.Valid());
  const auto areas = Areas(p);
  ASSERT_EQ(areas.size(), boxes.size());
  // Every button keeps one area within its rectangle, nearly all of it where nothing clashes.
  std::vector<int> owners(boxes.size(), 0);
  for (const Area& a : areas) {
    for (size_t i = 0; i < boxes.size(); ++i) owners[i] += Inside(a.box, boxes[i]);
  }
  for (size_t i = 0; i < boxes.size(); ++i) EXPECT_GE(owners[i], 1) << "button " << i;
  // And each area is still a ring at least two pixels thick on all four sides.
  for (const Area& a : areas) {
    const int midX = (a.box.left + a.box.right) / 2, midY = (a.box.top + a.box.bottom) / 2;
    EXPECT_GE(MarkedRun(p, a.box.left, midY, 1, 0), 2) << a.box.left << "," << a.box.top;
    EXPECT_GE(MarkedRun(p, a.box.right - 1, midY, -1, 0), 2) << a.box.left << "," << a.box.top;
    EXPECT_GE(MarkedRun(p, midX, a.box.top, 0, 1), 2) << a.box.left << "," << a.box.top;
    EXPECT_GE(MarkedRun(p, midX, a.box.bottom - 1, 0, -1), 2) << a.box.left << "," << a.box.top;
  }
}

TEST_F(Mask, ButtonsOffThePageAreLeftOutAndClippedOnesClosed) {
  tpl.SetButtonRect(0, {-100, -100, -10, -10});
  tpl.SetButtonRect(1, {680, 440, 800, 600});
  const Picture p = Render();
  const auto areas = Areas(p);
  ASSERT_EQ(areas.size(), 1u);
  EXPECT_EQ(areas[0].box.left, 680);
  EXPECT_EQ(areas[0].box.right, 720);
  EXPECT_EQ(areas[0].box.bottom, 480);
  EXPECT_NE(p.At(719, 460), kBlack);  // ring closed along the page edge
}

TEST_F(Mask, DefaultNameRecordedAndPalSize) {
  tpl.SetBackground("NTSC", "FALSE");
  ASSERT_NE(CreateMaskMenuBmp(tpl.c_path()), 0);
  EXPECT_EQ(tpl.Get("Background", "OutMask"), "menu_mask.bmp");
  EXPECT_EQ(Picture::Load(dir.File("menu_mask.bmp")).Height(), 576);

  tpl.SetBackground("OutMask", "highlight.bmp");
  ASSERT_NE(CreateMaskMenuBmp(tpl.c_path()), 0);
  EXPECT_TRUE(Picture::Load(dir.File("highlight.bmp")).Valid());
  EXPECT_EQ(tpl.Get("Background", "OutMask"), "highlight.bmp");

  tpl.SetBackground("OutMask", "missing/folder/m.bmp");
  EXPECT_EQ(CreateMaskMenuBmp(tpl.c_path()), 0);
  std::string absent = dir.File("absent.ini");
  EXPECT_EQ(CreateMaskMenuBmp(absent.data()), 0);
}

}  // namespace
}  // namespace tolvex::test
