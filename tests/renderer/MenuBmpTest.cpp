// CreateMenuBmp probed pixel by pixel, and the sizes and files ImageResize refuses.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "renderer/RenderTestSupport.h"
#include "renderer/SystemCases.h"
#include "support/Environment.h"

namespace tolvex::test {
namespace {

constexpr Rgb kGreen{0, 255, 0}, kYellow{255, 255, 0};

class MenuBmp : public ::testing::Test {
 protected:
  MenuBmp() : tpl(dir) { tpl.Page("NTSC", "TRUE"); }
  Picture Render() {
    EXPECT_NE(CreateMenuBmp(tpl.path()), 0);
    return Picture::Load(dir.File("menu.bmp"));
  }
  // How many files the folder holds, temporaries included.
  long Entries() const {
    return std::distance(std::filesystem::directory_iterator(dir.path()), {});
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(MenuBmp, ButtonsOfTheLayoutInUseFramedByColourOrPictureAndNavOnlyWhenSwitchedOn) {
  WriteSolidPicture(dir.File("b.bmp"), 30, 20, kBlue);
  WriteSolidPicture(dir.File("frame.png"), 16, 16, kYellow);
  tpl.Count(2);  // another count's layout is not this page's
  tpl.Button(0, {300, 300, 340, 340}, 2, kRed);
  tpl.Count(3);  // buttons found by their keys whatever the index
  const Box plain{10, 10, 50, 50}, pictured{100, 100, 300, 200}, framed{400, 100, 450, 150};
  tpl.Button(-1, plain, 2, kRed);
  tpl.Button(2, pictured, 6, kGreen);
  tpl.Key(2, "ButtonBmp", "b.bmp");
  tpl.Button(17, framed, 4, kGreen);
  tpl.Key(17, "ButtonFrameBmp", "frame.png");
  tpl.Set("NumOfButton3", "ButtonPosition4_left", "200");  // an index without all its edges
  tpl.Set("NumOfButton3", "ButtonPosition4_right", "240");
  const Box prev{20, 400, 80, 440};
  tpl.Nav(false, prev, 3, kRed);
  tpl.Nav(true, {640, 400, 700, 440}, 3, kRed);
  tpl.Page("AddNextButton", "True");  // only TRUE and true switch it on
  const Picture p = Render();
  ASSERT_EQ(p.height, 480);
  EXPECT_EQ(ReadFile(dir.File("menu.bmp")).size(), 54u + 720 * 480 * 3);  // uncompressed
  EXPECT_EQ(CountPixels(p, plain, kRed), Ring(plain, 2));
  EXPECT_EQ(CountPixels(p, pictured, kGreen), Ring(pictured, 6));
  EXPECT_EQ(CountPixels(p, {106, 106, 294, 194}, kBlue), 188 * 88);
  EXPECT_EQ(CountPixels(p, framed, kYellow), Ring(framed, 4));
  EXPECT_EQ(CountPixels(p, prev, kRed) - CountPixels(p, Grow(prev, -3), kRed), Ring(prev, 3));
  const int prevInk = 60 * 40 - CountPixels(p, prev, kBlack);  // its frame and arrow
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, kBlack),
            720 * 480 - Ring(plain, 2) - 200 * 100 - Ring(framed, 4) - prevInk);
}

// How tall the ink of column `x` of `box` is, from its first inked row to its last.
int ColumnInk(const Picture& p, Box box, int x, Rgb background) {
  int top = box.bottom, bottom = box.top;
  for (int y = box.top; y < box.bottom; ++y) {
    if (p.At(x, y) != background) top = std::min(top, y), bottom = std::max(bottom, y + 1);
  }
  return std::max(0, bottom - top);
}

TEST_F(MenuBmp, PreviousAndNextWithoutAPictureShowASolidArrowPointingTheirWay) {
  WriteSolidPicture(dir.File("bg.png"), 8, 8, kBlue);
  WriteSolidPicture(dir.File("b.png"), 8, 8, kGreen);
  tpl.Page("BackgroundBmp", "bg.png");
  const Box prev{40, 400, 136, 440}, next{584, 400, 680, 440}, numbered{300, 100, 396, 140};
  tpl.Nav(false, prev, 4, kYellow);
  tpl.Nav(true, next, 4, kYellow);
  tpl.Count(1);
  tpl.Button(0, numbered, 4, kYellow);  // a numbered button gets no arrow
  Picture p = Render();
  for (const auto& [box, left] : {std::pair{prev, true}, std::pair{next, false}}) {
    const Box inner = Grow(box, -4);
    const Ink arrow = FindInk(p, inner, kBlue, kYellow);
    const Box& b = arrow.bounds;
    EXPECT_GT(b.right - b.left, 88 / 2) << "large enough to read";
    EXPECT_GT(arrow.count * 3, (b.right - b.left) * (b.bottom - b.top)) << "solid, not outlined";
    EXPECT_EQ(arrow.partial > 0, kArrowsAntiAliased) << "anti-aliased edges where wanted";
    EXPECT_GT(arrow.count - arrow.partial, arrow.partial * 3) << "mostly full colour";
    // The head, the tallest part of an arrow, lies in the half it points to.
    int tallest = inner.left;
    for (int x = inner.left; x < inner.right; ++x) {
      if (ColumnInk(p, inner, x, kBlue) > ColumnInk(p, inner, tallest, kBlue)) tallest = x;
    }
    const int middle = (inner.left + inner.right) / 2;
    EXPECT_EQ(tallest < middle, left) << tallest;
    EXPECT_GT(ColumnInk(p, inner, tallest, kBlue), 32 / 2);
    EXPECT_NEAR(arrow.bounds.top + arrow.bounds.bottom, inner.top + inner.bottom, 2);
  }
  EXPECT_EQ(FindInk(p, Grow(numbered, -4), kBlue, kYellow).count, 0);

  tpl.Set("PrevButton", "ButtonPrevBmp", "b.png");  // a picture takes the arrow's place
  p = Render();
  EXPECT_EQ(CountPixels(p, Grow(prev, -4), kGreen), 88 * 32);
}

TEST_F(MenuBmp, TitlesLieInTheirBoxAntiAliasedAtThePixelSizeOnABackgroundOfCanvasSize) {
  WriteSolidPicture(dir.File("bg.png"), 64, 40, kBlue);
  tpl.Page({{"BackgroundBmp", "bg.png"},  // relative to the template's folder
            {"NTSC", "True"},             // only TRUE and true mean NTSC
            {"BackgroundTitle", "HHHH"}, {"BackgroundTitlePosition_x", "100"},
            {"BackgroundTitlePosition_y", "50"}, {"BackgroundTitleFont_Size", "100"},
            {"BackgroundTitleFont_R", "255"}, {"BackgroundTitleFont_G", "0"},
            {"BackgroundTitleFont_B", "0"}});
  tpl.Count(1);
  tpl.Button(0, {100, 300, 400, 400}, 0);
  tpl.Key(0, "ButtonTitle", "Play");  // no position: centred on the button
  const Picture p = Render();
  ASSERT_EQ(p.height, 576);
  EXPECT_EQ(CountPixels(p, {0, 400, 720, 576}, kBlue), 720 * 176);

  const Ink title = FindInk(p, {0, 0, 720, 280}, kBlue, kRed);
  EXPECT_GT(title.partial, 0) << "edges are anti-aliased";
  EXPECT_GE(title.bounds.left, 100);
  EXPECT_GE(title.bounds.top, 50);
  // A capital H is 0.73 em tall in DejaVu Sans: the size counts pixels, not points.
  EXPECT_NEAR(title.bounds.bottom - title.bounds.top, 73, 4);
  const Ink button = FindInk(p, {0, 280, 720, 480}, kBlue, kWhite);
  ASSERT_GT(button.count, 0);
  EXPECT_GE(button.bounds.top, 300);
  EXPECT_LE(button.bounds.bottom, 400);
  EXPECT_NEAR((button.bounds.left + button.bounds.right) / 2, 250, 4);
}

// (Where the outputs go when the template names them, and that their default names are
// recorded, is tried in OutputSafetyTest.)
TEST_F(MenuBmp, ABareTemplateNameLivesInTheProfileFolderWithItsPicturesAndOutputs) {
  WriteSolidPicture(dir.File("bg.png"), 4, 4, kBlue);
  tpl.Page({{"BackgroundBmp", "bg.png"}, {"OutputBmp", "bare.bmp"}});
  SetEnvironment("TOLVEX_PROFILE_DIR", dir.path().c_str());
  std::string bare = "menu.ini";
  EXPECT_NE(CreateMenuBmp(bare.data()), 0);
  SetEnvironment("TOLVEX_PROFILE_DIR", nullptr);
  EXPECT_EQ(Picture::Load(dir.File("bare.bmp")).At(0, 0), kBlue);
}

TEST_F(MenuBmp, FailuresLeaveTheOutputAsItWas) {
  WriteFile(dir.File("broken.png"), "\x89PNG\r\n\x1a\n not really");
  std::filesystem::create_directory(dir.File("out"));  // a folder in the output's place
  tpl.Count(1);
  tpl.Button(0, {10, 10, 50, 50}, 0);
  const std::pair<std::string, std::string> cases[] = {
      {"BackgroundBmp", "missing.png"}, {"BackgroundBmp", "broken.png"},
      {"OutputBmp", "out"}, {"ButtonFrameBmp", "nowhere.bmp"}};  // named: wanted
  for (const auto& [key, value] : cases) {
    tpl.Page({{"BackgroundBmp", ""}, {"OutputBmp", "menu.bmp"}});
    tpl.Key(0, "ButtonFrameBmp", "");
    ASSERT_NE(CreateMenuBmp(tpl.path()), 0) << value;  // the failure is the case's alone
    std::string old = ReadFile(dir.File("menu.bmp"));
    old.back() ^= 1;  // a picture as the renderer makes them, yet not this one
    WriteFile(dir.File("menu.bmp"), old);
    key == "ButtonFrameBmp" ? tpl.Key(0, key, value) : tpl.Page(key, value);
    EXPECT_EQ(CreateMenuBmp(tpl.path()), 0) << value;
    EXPECT_PRED2(Has, TolvexMenuBmpLastError(), dir.File(value));  // the file and the cause
    EXPECT_EQ(ReadFile(dir.File("menu.bmp")), old) << value;
    EXPECT_EQ(Entries(), 4) << value;  // and no temporary left behind
  }
  TestTemplate absent(dir, "absent.ini");
  EXPECT_EQ(CreateMenuBmp(absent.path()), 0);
  EXPECT_PRED2(Has, TolvexMenuBmpLastError(), absent.path());
  EXPECT_FALSE(FileExists(dir.File("absent.bmp")));
  EXPECT_EQ(CreateMenuBmp(nullptr), 0);
}

TEST_F(MenuBmp, TheReasonIsClearedBySuccessAndKeptPerThreadAndLibrary) {
  tpl.Page("BackgroundBmp", "missing.png");
  ASSERT_EQ(CreateMenuBmp(tpl.path()), 0);
  ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);  // the mask needs no picture
  EXPECT_STREQ(TolvexMenuMaskLastError(), "");
  EXPECT_PRED2(Has, TolvexMenuBmpLastError(), "missing.png");  // despite the mask's success
  std::string other = "unset";
  std::thread([&] { other = TolvexMenuBmpLastError(); }).join();
  EXPECT_EQ(other, "");
  tpl.Page("BackgroundBmp", "");
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  EXPECT_STREQ(TolvexMenuBmpLastError(), "");
}

class Resize : public ::testing::Test {
 protected:
  int Run(const std::string& from, const std::string& to, int w, int h) {
    std::string a = dir.File(from), b = dir.File(to);
    return ImageResize(a.data(), b.data(), w, h);
  }
  TempDir dir;
};

TEST_F(Resize, RefusesBadSizesAndUnreadablePictures) {
  WriteSolidPicture(dir.File("in.bmp"), 8, 8, kWhite);
  const std::tuple<const char*, const char*, int, int> cases[] = {
      {"in.bmp", "a.bmp", 0, 10},          {"in.bmp", "a.bmp", 10, -1},
      {"in.bmp", "a.bmp", 100000, 100000}, {"missing.bmp", "a.bmp", 10, 10},
      {"in.bmp", "no/folder/a.bmp", 10, 10}};
  for (const auto& [from, to, w, h] : cases) EXPECT_EQ(Run(from, to, w, h), 0) << from << w;
  EXPECT_PRED2(Has, TolvexMenuBmpLastError(), dir.File("no/folder/a.bmp"));
  EXPECT_FALSE(FileExists(dir.File("a.bmp")));
}

}  // namespace
}  // namespace tolvex::test
