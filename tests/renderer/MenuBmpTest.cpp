#include <tolvex/MenuBmp.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

constexpr Rgb kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255}, kYellow{255, 255, 0};

int Ring(int w, int h, int t) { return w * h - (w - 2 * t) * (h - 2 * t); }

class MenuBmp : public ::testing::Test {
 protected:
  MenuBmp() : tpl(dir) { tpl.Page("NTSC", "TRUE"); }
  Picture Render() {
    EXPECT_NE(CreateMenuBmp(tpl.path()), 0);
    return Picture::Load(dir.File("menu.bmp"));
  }
  // The names in the folder, temporaries included.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir.path())) {
      names.push_back(e.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(MenuBmp, NtscOrPalCanvasOfTheBackgroundPictureElseBlack) {
  const Picture black = Render();
  EXPECT_EQ(CountPixels(black, {0, 0, 720, 480}, kBlack), 720 * 480);
  EXPECT_EQ(ReadFile(dir.File("menu.bmp")).size(), 54u + 720 * 480 * 3);  // uncompressed

  WriteSolidPicture(dir.File("bg.png"), 64, 40, kRed);
  tpl.Page("BackgroundBmp", "bg.png");  // relative to the template's folder
  tpl.Page("NTSC", "True");             // only TRUE and true mean NTSC
  const Picture red = Render();
  EXPECT_EQ(red.Height(), 576);
  EXPECT_EQ(CountPixels(red, {0, 0, 720, 576}, kRed), 720 * 576);
}

TEST_F(MenuBmp, PictureInsideAFrameRingOfColourOrPicture) {
  WriteSolidPicture(dir.File("b.bmp"), 30, 20, kBlue);
  WriteSolidPicture(dir.File("frame.png"), 16, 16, kYellow);
  tpl.Count(2);
  tpl.Button(0, {100, 100, 300, 200}, 6, kGreen);
  tpl.Key(0, "ButtonBmp", "b.bmp");
  tpl.Button(1, {400, 100, 450, 150}, 4, kGreen);
  tpl.Key(1, "ButtonFrameBmp", "frame.png");
  const Picture p = Render();
  EXPECT_EQ(CountPixels(p, {100, 100, 300, 200}, kGreen), Ring(200, 100, 6));
  EXPECT_EQ(CountPixels(p, {106, 106, 294, 194}, kBlue), 188 * 88);
  EXPECT_EQ(CountPixels(p, {400, 100, 450, 150}, kYellow), Ring(50, 50, 4));
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, kBlack), 720 * 480 - 200 * 100 - Ring(50, 50, 4));
}

TEST_F(MenuBmp, ButtonsFoundByTheirKeysWhateverTheIndexAndNavOnlyWhenSwitchedOn) {
  tpl.Count(2);  // another count's layout is not this page's
  tpl.Button(0, {300, 10, 340, 50}, 2, kRed);
  tpl.Count(3);
  tpl.Button(-1, {10, 10, 50, 50}, 2, kRed);
  tpl.Button(2, {60, 10, 100, 50}, 2, kRed);
  tpl.Button(17, {110, 10, 150, 50}, 2, kRed);
  tpl.Set("NumOfButton3", "ButtonPosition4_left", "200");  // an index without all its edges
  tpl.Set("NumOfButton3", "ButtonPosition4_right", "240");
  tpl.Nav(false, {20, 400, 80, 440}, 3, kRed);
  tpl.Nav(true, {640, 400, 700, 440}, 3, kRed);
  tpl.Page("AddNextButton", "True");
  const Picture p = Render();
  EXPECT_EQ(p.At(10, 10), kRed);
  EXPECT_EQ(p.At(60, 30), kRed);
  EXPECT_EQ(p.At(149, 49), kRed);
  EXPECT_EQ(p.At(79, 439), kRed);
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, kRed), 3 * Ring(40, 40, 2) + Ring(60, 40, 3));
}

TEST_F(MenuBmp, TitlesLieInTheirBoxAntiAliasedAtThePixelSize) {
  tpl.Page("BackgroundTitle", "HHHH");
  tpl.Page("BackgroundTitlePosition_x", "100");
  tpl.Page("BackgroundTitlePosition_y", "50");
  tpl.Page("BackgroundTitleFont_Size", "100");
  tpl.Page("BackgroundTitleFont_R", "255");
  tpl.Page("BackgroundTitleFont_G", "0");
  tpl.Page("BackgroundTitleFont_B", "0");
  tpl.Count(1);
  tpl.Button(0, {100, 300, 400, 400}, 0);
  tpl.Key(0, "ButtonTitle", "Play");  // no position: centred on the button
  const Picture p = Render();

  const Ink title = FindInk(p, {0, 0, 720, 280}, kBlack, kRed);
  EXPECT_GT(title.partial, 0) << "edges are anti-aliased";
  EXPECT_GE(title.bounds.left, 100);
  EXPECT_GE(title.bounds.top, 50);
  // A capital H is 0.73 em tall in DejaVu Sans: the size counts pixels, not points.
  EXPECT_NEAR(title.bounds.bottom - title.bounds.top, 73, 4);
  const Ink button = FindInk(p, {0, 280, 720, 480}, kBlack, kWhite);
  ASSERT_GT(button.count, 0);
  EXPECT_GE(button.bounds.top, 300);
  EXPECT_LE(button.bounds.bottom, 400);
  EXPECT_NEAR((button.bounds.left + button.bounds.right) / 2, 250, 4);
}

TEST_F(MenuBmp, StyleFlagsChangeTheInkAndUnknownFontsFallBack) {
  auto ink = [&](const std::string& font, const char* flag) {
    tpl.Page("BackgroundTitle", "Menu");
    tpl.Page("BackgroundTitleFont_Size", "60");
    tpl.Page("BackgroundTitleFont_Name", font);
    for (const char* f : {"Bold", "Italic", "Underline"}) {
      tpl.Page(std::string("BackgroundTitleFont_") + f, f == std::string(flag) ? "TRUE" : "FALSE");
    }
    return FindInk(Render(), {0, 0, 720, 480}, kBlack, kWhite);
  };
  const Ink plain = ink("DejaVu Sans", "");
  EXPECT_GT(ink("DejaVu Sans", "Bold").count, plain.count * 11 / 10);
  EXPECT_NE(ink("DejaVu Sans", "Italic").bounds.right, plain.bounds.right);
  EXPECT_GT(ink("DejaVu Sans", "Underline").bounds.bottom, plain.bounds.bottom);
  EXPECT_EQ(ink("No Such Font 12345", "").count, plain.count);
}

TEST_F(MenuBmp, DefaultOutputIsRecordedAndANamedOneKept) {
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  EXPECT_EQ(tpl.Get("Background", "OutputBmp"), "menu.bmp");
  std::filesystem::create_directory(dir.File("out"));
  tpl.Page("OutputBmp", "out/page.bmp");
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  EXPECT_EQ(tpl.Get("Background", "OutputBmp"), "out/page.bmp");
  EXPECT_TRUE(Picture::Load(dir.File("out/page.bmp")).Valid());
  tpl.Page("OutputBmp", dir.File("absolute.bmp"));
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  EXPECT_EQ(Files(), (std::vector<std::string>{"absolute.bmp", "menu.bmp", "menu.ini", "out"}));

  // A bare template name lives in the profile folder, with its pictures and outputs.
  WriteSolidPicture(dir.File("bg.png"), 4, 4, kBlue);
  tpl.Page("BackgroundBmp", "bg.png");
  tpl.Page("OutputBmp", "bare.bmp");
  setenv("TOLVEX_PROFILE_DIR", dir.path().c_str(), 1);
  std::string bare = "menu.ini";
  EXPECT_NE(CreateMenuBmp(bare.data()), 0);
  unsetenv("TOLVEX_PROFILE_DIR");
  EXPECT_EQ(Picture::Load(dir.File("bare.bmp")).At(0, 0), kBlue);
}

TEST_F(MenuBmp, FailuresLeaveTheOutputAsItWas) {
  WriteFile(dir.File("menu.bmp"), "old");
  tpl.Page("OutputBmp", "menu.bmp");
  WriteFile(dir.File("broken.png"), "\x89PNG\r\n\x1a\n not really");
  // A 2 x 2 BMP whose header claims 20000 x 20000 pixels: refused before decoding.
  WriteSolidPicture(dir.File("huge.bmp"), 2, 2, kRed);
  std::string huge = ReadFile(dir.File("huge.bmp"));
  huge[19] = huge[23] = 0x4e, huge[18] = huge[22] = 0x20;
  WriteFile(dir.File("huge.bmp"), huge);
  tpl.Count(1);
  tpl.Button(0, {10, 10, 50, 50}, 2);
  for (const auto& [key, value] : std::vector<std::pair<std::string, std::string>>{
           {"BackgroundBmp", "missing.png"}, {"BackgroundBmp", "broken.png"},
           {"BackgroundBmp", "huge.bmp"}, {"OutputBmp", "no/folder/menu.bmp"},
           {"OutputBmp", "out"}}) {
    std::filesystem::create_directory(dir.File("out"));  // a folder in the output's place
    tpl.Page(key, value);
    EXPECT_EQ(CreateMenuBmp(tpl.path()), 0) << value;
    EXPECT_EQ(ReadFile(dir.File("menu.bmp")), "old") << value;
    EXPECT_EQ(Files().size(), 5u) << value;  // and no temporary left behind
  }
  tpl.Page("BackgroundBmp", "");
  tpl.Page("OutputBmp", "menu.bmp");
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  tpl.Key(0, "ButtonFrameBmp", "nowhere.bmp");  // unused with a ring, but named
  tpl.Key(0, "ButtonFrameThickness", "0");
  EXPECT_EQ(CreateMenuBmp(tpl.path()), 0);

  TestTemplate absent(dir, "absent.ini");
  EXPECT_EQ(CreateMenuBmp(absent.path()), 0);
  EXPECT_FALSE(FileExists(dir.File("absent.bmp")));
  EXPECT_EQ(CreateMenuBmp(nullptr), 0);
}

}  // namespace
}  // namespace tolvex::test
