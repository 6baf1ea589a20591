#include <tolvex/MenuBmp.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};
constexpr Rgb kYellow{255, 255, 0};

class MenuBmp : public ::testing::Test {
 protected:
  MenuBmp() : tpl(dir) { tpl.SetBackground("NTSC", "TRUE"); }

  Picture Render() {
    EXPECT_NE(CreateMenuBmp(tpl.c_path()), 0);
    return Picture::Load(dir.File("menu.bmp"));
  }
  // The files of the folder other than the template.
  std::vector<std::string> Outputs() const {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir.path())) {
      if (e.path().filename() != "menu.ini") names.push_back(e.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  TempDir dir;
  TestTemplate tpl;
};

TEST_F(MenuBmp, CanvasIsNtscOrPalSizedUncompressed24BitBmp) {
  Picture ntsc = Render();
  ASSERT_TRUE(ntsc.Valid());
  EXPECT_EQ(ntsc.Width(), 720);
  EXPECT_EQ(ntsc.Height(), 480);
  const std::string bytes = ReadFile(dir.File("menu.bmp"));
  ASSERT_GT(bytes.size(), 54u);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  EXPECT_EQ(bytes[28], 24);  // bits per pixel
  EXPECT_EQ(bytes[30], 0);   // BI_RGB
  EXPECT_EQ(bytes.size(), 54u + 720 * 3 * 480);

  for (const char* notNtsc : {"FALSE", "True", "1"}) {
    tpl.SetBackground("NTSC", notNtsc);
    Picture pal = Render();
    EXPECT_EQ(pal.Height(), 576) << notNtsc;
  }
}

TEST_F(MenuBmp, BackgroundPictureFillsTheCanvasElseBlack) {
  Picture plain = Render();
  EXPECT_EQ(CountPixels(plain, {0, 0, 720, 480}, kBlack), 720 * 480);

  WriteSolidPicture(dir.File("bg.png"), 64, 40, kRed);
  tpl.SetBackground("BackgroundBmp", "bg.png");  // relative to the template's folder
  Picture red = Render();
  EXPECT_EQ(CountPixels(red, {0, 0, 720, 480}, kRed), 720 * 480);
}

TEST_F(MenuBmp, ButtonPictureInsideItsFrameRingOfItsColour) {
  WriteSolidPicture(dir.File("b.bmp"), 30, 20, kBlue);
  tpl.SetButtonCount(1);
  tpl.SetButtonRect(0, {100, 100, 300, 200});
  tpl.SetButtonFrame(0, 6, kGreen);
  tpl.SetButtonKey(0, "ButtonBmp", "b.bmp");
  Picture p = Render();

  const int ring = 200 * 100 - 188 * 88;
  EXPECT_EQ(CountPixels(p, {100, 100, 300, 200}, kGreen), ring);
  EXPECT_EQ(CountPixels(p, {106, 106, 294, 194}, kBlue), 188 * 88);
  EXPECT_EQ(p.At(99, 150), kBlack);
  EXPECT_EQ(p.At(300, 150), kBlack);
  EXPECT_EQ(p.At(150, 200), kBlack);
  EXPECT_EQ(CountPixels(p, {0, 0, 720, 480}, kBlack), 720 * 480 - 200 * 100);
}

TEST_F(MenuBmp, FramePictureTakesTheColoursPlace) {
  WriteSolidPicture(dir.File("frame.jpg"), 16, 16, kYellow);
  tpl.SetButtonCount(1);
  tpl.SetButtonRect(3, {10, 10, 60, 60});
  tpl.SetButtonFrame(3, 4, kGreen);
  tpl.SetButtonKey(3, "ButtonFrameBmp", "frame.jpg");
  Picture p = Render();
  EXPECT_EQ(CountPixels(p, {10, 10, 60, 60}, kGreen), 0);
  // JPEG is lossy: near-yellow on the ring, the inside left alone.
  for (const auto& [x, y] : {std::pair{10, 10}, {12, 35}, {59, 59}, {35, 57}}) {
    const Rgb c = p.At(x, y);
    EXPECT_TRUE(c.r > 230 && c.g > 230 && c.b < 30) << x << "," << y << " " << c;
  }
  EXPECT_EQ(p.At(35, 35), kBlack);
}

TEST_F(MenuBmp, ButtonsAreFoundByTheirKeysWhateverTheIndexBase) {
  tpl.SetButtonCount(3);
  tpl.SetButtonRect(1, {10, 10, 50, 50});
  tpl.SetButtonRect(2, {60, 10, 100, 50});
  tpl.SetButtonRect(17, {110, 10, 150, 50});
  for (int i : {1, 2, 17}) tpl.SetButtonFrame(i, 2, kRed);
  // Not buttons of this page: an index without all four edges, and another count's layout.
  tpl.Set("NumOfButton3", "ButtonPosition4_left", "200");
  tpl.Set("NumOfButton3", "ButtonPosition4_right", "240");
  tpl.Set("NumOfButton3", "ButtonPosition4_top", "10");
  tpl.Set("NumOfButton2", "ButtonPosition0_left", "300");
  tpl.Set("NumOfButton2", "ButtonPosition0_right", "340");
  tpl.Set("NumOfButton2", "ButtonPosition0_top", "10");
  tpl.Set("NumOfButton2", "ButtonPosition0_bottom", "50");
  tpl.Set("NumOfButton2", "ButtonFrameThickness0", "2");
  Picture p = Render();
  EXPECT_EQ(p.At(10, 10), kRed);
  EXPECT_EQ(p.At(60, 30), kRed);
  EXPECT_EQ(p.At(149, 49), kRed);
  EXPECT_EQ(CountPixels(p, {190, 0, 720, 480}, kBlack), 530 * 480);
}

TEST_F(MenuBmp, NavigationButtonsOnlyWhenSwitchedOn) {
  tpl.SetNavButton(false, {20, 400, 80, 440}, 3, kRed);
  tpl.SetNavButton(true, {640, 400, 700, 440}, 3, kBlue);
  tpl.SetBackground("AddNextButton", "True");  // only TRUE and true switch it on
  Picture p = Render();
  EXPECT_EQ(p.At(20, 400), kRed);
  EXPECT_EQ(p.At(79, 439), kRed);
  EXPECT_EQ(p.At(640, 400), kBlack);

  tpl.SetBackground("AddNextButton", "true");
  EXPECT_EQ(Render().At(699, 439), kBlue);
}

TEST_F(MenuBmp, TitlesLieInTheirBoxAntiAliasedAtThePixelSize) {
  tpl.SetBackground("BackgroundTitle", "HHHH");
  tpl.SetBackground("BackgroundTitlePosition_x", "100");
  tpl.SetBackground("BackgroundTitlePosition_y", "50");
  tpl.SetBackground("BackgroundTitleFont_Name", "DejaVu Sans");
  tpl.SetBackground("BackgroundTitleFont_Size", "100");
  tpl.SetBackground("BackgroundTitleFont_R", "255");
  tpl.SetBackground("BackgroundTitleFont_G", "0");
  tpl.SetBackground("BackgroundTitleFont_B", "0");
  tpl.SetButtonCount(1);
  tpl.SetButtonRect(0, {100, 300, 400, 400});
  tpl.SetButtonKey(0, "ButtonTitle", "Play");
  // No position: centred on the button.
  tpl.SetButtonKey(0, "ButtonTitleFont_Size", "30");
  Picture p = Render();

  const Ink title = FindInk(p, {0, 0, 720, 280}, kBlack, kRed);
  ASSERT_GT(title.count, 0);
  EXPECT_GT(title.partial, 0) << "edges are anti-aliased";
  EXPECT_GE(title.bounds.left, 100);
  EXPECT_GE(title.bounds.top, 50);
  EXPECT_LE(title.bounds.bottom, 50 + 100);
  // A capital H is about 0.73 em tall in DejaVu Sans: the size counts pixels, not points.
  const int capHeight = title.bounds.bottom - title.bounds.top;
  EXPECT_NEAR(capHeight, 73, 4);

  const Ink button = FindInk(p, {0, 280, 720, 480}, kBlack, kWhite);
  ASSERT_GT(button.count, 0);
  EXPECT_GE(button.bounds.left, 100);
  EXPECT_LE(button.bounds.right, 400);
  EXPECT_GE(button.bounds.top, 300);
  EXPECT_LE(button.bounds.bottom, 400);
  EXPECT_NEAR((button.bounds.left + button.bounds.right) / 2, 250, 4);
}

TEST_F(MenuBmp, StyleFlagsAndUnknownFontsChangeTheInk) {
  auto inkOf = [&](const std::string& font, bool bold, bool italic, bool underline) {
    tpl.SetBackground("BackgroundTitle", "Menu");
    tpl.SetBackground("BackgroundTitlePosition_x", "20");
    tpl.SetBackground("BackgroundTitlePosition_y", "20");
    tpl.SetBackground("BackgroundTitleFont_Name", font);
    tpl.SetBackground("BackgroundTitleFont_Size", "60");
    tpl.SetBackground("BackgroundTitleFont_Bold", bold ? "TRUE" : "FALSE");
    tpl.SetBackground("BackgroundTitleFont_Italic", italic ? "TRUE" : "FALSE");
    tpl.SetBackground("BackgroundTitleFont_Underline", underline ? "TRUE" : "FALSE");
    return FindInk(Render(), {0, 0, 720, 480}, kBlack, kWhite);
  };
  const Ink plain = inkOf("DejaVu Sans", false, false, false);
  const Ink bold = inkOf("DejaVu Sans", true, false, false);
  const Ink italic = inkOf("DejaVu Sans", false, true, false);
  const Ink underline = inkOf("DejaVu Sans", false, false, true);
  const Ink unknown = inkOf("No Such Font 12345", false, false, false);

  EXPECT_GT(bold.count, plain.count * 11 / 10);
  EXPECT_NE(italic.bounds.right, plain.bounds.right);
  EXPECT_GT(underline.bounds.bottom, plain.bounds.bottom);
  EXPECT_GT(underline.count, plain.count);
  // An unknown family falls back to the default one.
  EXPECT_EQ(unknown.count, plain.count);
}

TEST_F(MenuBmp, DefaultOutputIsRecordedAndANamedOneKept) {
  ASSERT_NE(CreateMenuBmp(tpl.c_path()), 0);
  EXPECT_EQ(tpl.Get("Background", "OutputBmp"), "menu.bmp");
  EXPECT_TRUE(Picture::Load(dir.File("menu.bmp")).Valid());

  std::filesystem::create_directory(dir.File("out"));
  tpl.SetBackground("OutputBmp", "out/page.bmp");
  ASSERT_NE(CreateMenuBmp(tpl.c_path()), 0);
  EXPECT_TRUE(Picture::Load(dir.File("out/page.bmp")).Valid());
  EXPECT_EQ(tpl.Get("Background", "OutputBmp"), "out/page.bmp");

  tpl.SetBackground("OutputBmp", dir.File("absolute.bmp"));
  ASSERT_NE(CreateMenuBmp(tpl.c_path()), 0);
  EXPECT_TRUE(Picture::Load(dir.File("absolute.bmp")).Valid());
  EXPECT_EQ(Outputs(), (std::vector<std::string>{"absolute.bmp", "menu.bmp", "out"}));
}

TEST_F(MenuBmp, FailsWithoutTouchingTheOutput) {
  const std::string before = "previous picture";
  WriteFile(dir.File("menu.bmp"), before);
  tpl.SetBackground("OutputBmp", "menu.bmp");
  auto failsCleanly = [&](const char* what) {
    EXPECT_EQ(CreateMenuBmp(tpl.c_path()), 0) << what;
    EXPECT_EQ(ReadFile(dir.File("menu.bmp")), before) << what;
    for (const auto& name : Outputs()) EXPECT_NE(name[0], '.') << what << ": " << name;
  };

  tpl.SetBackground("BackgroundBmp", "missing.png");
  failsCleanly("missing background");

  WriteFile(dir.File("broken.png"), "\x89PNG\r\n\x1a\n not really");
  tpl.SetBackground("BackgroundBmp", "broken.png");
  failsCleanly("undecodable background");

  tpl.SetBackground("BackgroundBmp", "");
  tpl.SetButtonCount(1);
  tpl.SetButtonRect(0, {10, 10, 50, 50});
  tpl.SetButtonKey(0, "ButtonFrameBmp", "nowhere.bmp");
  failsCleanly("missing frame picture");
  tpl.SetButtonKey(0, "ButtonFrameBmp", "");

  // A BMP header claiming 20000 x 20000 pixels in 54 bytes: refused before decoding.
  WriteSolidPicture(dir.File("huge.bmp"), 2, 2, kRed);
  std::string huge = ReadFile(dir.File("huge.bmp"));
  for (int at : {18, 22}) {
    huge[at] = 0x20, huge[at + 1] = 0x4e, huge[at + 2] = 0, huge[at + 3] = 0;  // 20000
  }
  WriteFile(dir.File("huge.bmp"), huge);
  tpl.SetButtonKey(0, "ButtonBmp", "huge.bmp");
  failsCleanly("huge");
}

TEST_F(MenuBmp, FailsOnUnreadableTemplateOrUnwritableOutput) {
  tpl.SetBackground("OutputBmp", "no/such/folder/menu.bmp");
  EXPECT_EQ(CreateMenuBmp(tpl.c_path()), 0);
  tpl.SetBackground("OutputBmp", "taken");
  std::filesystem::create_directory(dir.File("taken"));
  EXPECT_EQ(CreateMenuBmp(tpl.c_path()), 0);
  EXPECT_EQ(Outputs(), std::vector<std::string>{"taken"});

  std::string missing = dir.File("absent.ini");
  EXPECT_EQ(CreateMenuBmp(missing.data()), 0);
  EXPECT_FALSE(FileExists(dir.File("absent.bmp")));
  EXPECT_FALSE(FileExists(missing));
  EXPECT_EQ(CreateMenuBmp(nullptr), 0);
}

}  // namespace
}  // namespace tolvex::test
