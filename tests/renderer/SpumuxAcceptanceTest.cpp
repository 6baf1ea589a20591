// Acceptance by the DVD tools: the rendered menu becomes an MPEG-2 still (ffmpeg), the mask
// its highlight (spumux, autooutline="infer"), and the result a DVD menu (dvdauthor).
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <tuple>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

bool Have(const char* tool) {
  return std::system((std::string("command -v ") + tool + " >/dev/null 2>&1").c_str()) == 0;
}

// Runs `command` in `folder` through the shell; its exit status.
int Shell(const std::string& folder, const std::string& command) {
  const int status = std::system(("cd '" + folder + "' && " + command).c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

using Found = std::tuple<int, int, int, int>;  // left, top, right, bottom

// The button areas spumux reports ("Autodetect 0 = 100x100-300x172").
std::vector<Found> Autodetected(const std::string& log) {
  static const std::regex line(R"(Autodetect \d+ = (\d+)x(\d+)-(\d+)x(\d+))");
  std::vector<Found> found;
  for (std::sregex_iterator m(log.begin(), log.end(), line), end; m != end; ++m) {
    found.emplace_back(std::stoi((*m)[1]), std::stoi((*m)[2]), std::stoi((*m)[3]),
                       std::stoi((*m)[4]));
  }
  std::sort(found.begin(), found.end());
  return found;
}

class DvdTools : public ::testing::TestWithParam<bool> {};

TEST_P(DvdTools, SpumuxFindsTheTemplatesButtonsAndDvdauthorTakesTheMenu) {
  for (const char* tool : {"spumux", "ffmpeg", "dvdauthor"}) {
    if (!Have(tool)) GTEST_SKIP() << tool << " is not installed";
  }
  const bool ntsc = GetParam();
  const std::string format = ntsc ? "ntsc" : "pal";
  TempDir dir;
  TestTemplate tpl(dir);
  tpl.SetBackground("NTSC", ntsc ? "TRUE" : "FALSE");
  WriteSolidPicture(dir.File("bg.jpg"), 320, 240, Rgb{30, 40, 90});
  WriteSolidPicture(dir.File("b.png"), 40, 30, Rgb{200, 160, 40});
  tpl.SetBackground("BackgroundBmp", "bg.jpg");
  tpl.SetBackground("BackgroundTitle", "Main menu");
  tpl.SetBackground("BackgroundTitlePosition_x", "240");
  tpl.SetBackground("BackgroundTitlePosition_y", "30");
  tpl.SetBackground("BackgroundTitleFont_Size", "40");

  // Odd top and bottom edges too: spumux rounds those to even rows.
  const std::vector<Box> buttons = {
      {80, 101, 300, 171}, {420, 100, 640, 170}, {80, 231, 300, 301}, {420, 230, 640, 300}};
  tpl.SetButtonCount(static_cast<int>(buttons.size()));
  for (size_t i = 0; i < buttons.size(); ++i) {
    const int index = static_cast<int>(i) + 1;
    tpl.SetButtonRect(index, buttons[i]);
    tpl.SetButtonFrame(index, 4, kWhite);
    tpl.SetButtonKey(index, "ButtonBmp", "b.png");
    tpl.SetButtonKey(index, "ButtonTitle", "Chapter " + std::to_string(index));
  }
  const Box prev{40, 380, 120, 430}, next{600, 380, 680, 430};
  tpl.SetNavButton(false, prev, 2, kWhite);
  tpl.SetNavButton(true, next, 2, kWhite);

  ASSERT_NE(CreateMenuBmp(tpl.c_path()), 0);
  ASSERT_NE(CreateMaskMenuBmp(tpl.c_path()), 0);

  // Debian's spumux reads PNG only: convert with every pixel kept.
  ASSERT_EQ(Shell(dir.path(), "ffmpeg -v error -y -i menu_mask.bmp -pix_fmt rgb24 mask.png"), 0);
  const Picture bmp = Picture::Load(dir.File("menu_mask.bmp"));
  const Picture png = Picture::Load(dir.File("mask.png"));
  ASSERT_TRUE(png.Valid());
  ASSERT_EQ(png.Height(), bmp.Height());
  int differing = 0;
  for (int y = 0; y < bmp.Height(); ++y) {
    for (int x = 0; x < bmp.Width(); ++x) differing += bmp.At(x, y) != png.At(x, y);
  }
  ASSERT_EQ(differing, 0);

  ASSERT_EQ(Shell(dir.path(), "ffmpeg -v error -y -loop 1 -i menu.bmp -t 1 -target " + format +
                                  "-dvd -aspect 4:3 -an menu.mpg"),
            0);
  WriteFile(dir.File("spumux.xml"),
            "<subpictures><stream><spu force=\"yes\" start=\"00:00:00.00\" "
            "highlight=\"mask.png\" select=\"mask.png\" autooutline=\"infer\" "
            "autoorder=\"rows\" transparent=\"000000\"/></stream></subpictures>\n");
  const std::string videoFormat = "VIDEO_FORMAT=" + std::string(ntsc ? "NTSC" : "PAL") + " ";
  ASSERT_EQ(Shell(dir.path(), videoFormat +
                                  "spumux -m dvd -v 2 spumux.xml < menu.mpg > menu_sub.mpg "
                                  "2> spumux.log"),
            0);

  std::vector<Found> expected;
  auto expect = [&](const Box& b) {
    expected.emplace_back(b.left, b.top & ~1, b.right, (b.bottom + 1) & ~1);
  };
  for (const Box& b : buttons) expect(b);
  expect(prev);
  expect(next);
  std::sort(expected.begin(), expected.end());
  const std::string log = ReadFile(dir.File("spumux.log"));
  EXPECT_EQ(Autodetected(log), expected) << log;

  // dvdauthor checks every highlight button against the names the menu gives them.
  std::string xml = "<dvdauthor dest=\"dvd\"><vmgm><menus><video format=\"" + format +
                    "\"/><pgc entry=\"title\"><vob file=\"menu_sub.mpg\" pause=\"inf\"/>";
  for (size_t i = 1; i <= expected.size(); ++i) {
    xml += "<button name=\"" + std::to_string(i) + "\">jump title 1;</button>";
  }
  xml += "</pgc></menus></vmgm><titleset><titles><video format=\"" + format +
         "\"/><pgc><vob file=\"menu.mpg\"/><post>call vmgm menu 1;</post></pgc></titles>"
         "</titleset></dvdauthor>\n";
  WriteFile(dir.File("dvd.xml"), xml);
  const int authored = Shell(dir.path(), videoFormat + "dvdauthor -x dvd.xml > dvdauthor.log 2>&1");
  const std::string authorLog = ReadFile(dir.File("dvdauthor.log"));
  EXPECT_EQ(authored, 0) << authorLog;
  EXPECT_EQ(authorLog.find("ERR:"), std::string::npos) << authorLog;
  EXPECT_TRUE(FileExists(dir.File("dvd/VIDEO_TS/VIDEO_TS.IFO")));
}

INSTANTIATE_TEST_SUITE_P(Renderer, DvdTools, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Ntsc" : "Pal"; });

}  // namespace
}  // namespace tolvex::test
