// Acceptance by the DVD tools: the rendered menu becomes an MPEG-2 still (ffmpeg), the mask
// its highlight (spumux, autooutline="infer"), and the result a DVD menu (dvdauthor).
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <tuple>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

int Shell(const std::string& folder, const std::string& command) {
  const int status = std::system(("cd '" + folder + "' && " + command).c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

using Found = std::tuple<int, int, int, int>;  // left, top, right, bottom

// The areas spumux reports: "Autodetect 0 = 100x100-300x172".
std::vector<Found> Autodetected(const std::string& log) {
  std::vector<Found> found;
  for (size_t at = 0; (at = log.find("Autodetect ", at)) != std::string::npos; ++at) {
    int n, left, top, right, bottom;
    if (std::sscanf(log.c_str() + at, "Autodetect %d = %dx%d-%dx%d", &n, &left, &top, &right,
                    &bottom) == 5) {
      found.emplace_back(left, top, right, bottom);
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

class DvdTools : public ::testing::TestWithParam<bool> {};

TEST_P(DvdTools, SpumuxFindsTheTemplatesButtonsAndDvdauthorTakesTheMenu) {
  if (Shell(".", "for t in spumux ffmpeg dvdauthor; do command -v $t || exit 1; done >/dev/null")) {
    GTEST_SKIP() << "spumux, ffmpeg or dvdauthor missing";
  }
  const bool ntsc = GetParam();
  const std::string format = ntsc ? "ntsc" : "pal";
  const std::string env = std::string("VIDEO_FORMAT=") + (ntsc ? "NTSC " : "PAL ");
  TempDir dir;
  TestTemplate tpl(dir);
  tpl.Page("NTSC", ntsc ? "TRUE" : "FALSE");
  WriteSolidPicture(dir.File("bg.jpg"), 320, 240, Rgb{30, 40, 90});
  WriteSolidPicture(dir.File("b.png"), 40, 30, Rgb{200, 160, 40});
  tpl.Page("BackgroundBmp", "bg.jpg");
  tpl.Page("BackgroundTitle", "Main menu");
  // Odd top and bottom edges too: spumux rounds those to even rows.
  const std::vector<Box> boxes = {{80, 101, 300, 171}, {420, 100, 640, 170},
                                  {80, 231, 300, 301}, {420, 230, 640, 300},
                                  {40, 380, 120, 430}, {600, 380, 680, 430}};
  tpl.Count(4);
  for (int i = 1; i <= 4; ++i) {
    tpl.Button(i, boxes[i - 1], 4);
    tpl.Key(i, "ButtonBmp", "b.png");
    tpl.Key(i, "ButtonTitle", "Chapter " + std::to_string(i));
  }
  tpl.Nav(false, boxes[4], 2);
  tpl.Nav(true, boxes[5], 2);
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);

  // Debian's spumux reads PNG only: convert losslessly.
  ASSERT_EQ(Shell(dir.path(), "ffmpeg -v error -i menu_mask.bmp -pix_fmt rgb24 mask.png"), 0);
  ASSERT_EQ(Shell(dir.path(), "ffmpeg -v error -loop 1 -i menu.bmp -t 1 -target " + format +
                                  "-dvd -aspect 4:3 -an menu.mpg"), 0);
  WriteFile(dir.File("spumux.xml"),
            "<subpictures><stream><spu force=\"yes\" start=\"00:00:00.00\" highlight=\"mask.png\""
            " select=\"mask.png\" autooutline=\"infer\" autoorder=\"rows\" transparent=\"000000\""
            "/></stream></subpictures>\n");
  // spumux exits 0 even when it read nothing: judge it by the buttons it reports.
  ASSERT_EQ(Shell(dir.path(), env + "spumux -m dvd -v 2 spumux.xml <menu.mpg >sub.mpg 2>log"), 0);
  // Each area is the button grown by its outline: as thick as the frame, 4 and 2 pixels.
  std::vector<Found> expected;
  for (size_t i = 0; i < boxes.size(); ++i) {
    const Box b = Grow(boxes[i], i < 4 ? 4 : 2);
    expected.emplace_back(b.left, b.top & ~1, b.right, (b.bottom + 1) & ~1);
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(Autodetected(ReadFile(dir.File("log"))), expected) << ReadFile(dir.File("log"));

  // dvdauthor checks each highlight button against the buttons the menu names.
  std::string xml = "<dvdauthor dest=\"dvd\"><vmgm><menus><video format=\"" + format +
                    "\"/><pgc entry=\"title\"><vob file=\"sub.mpg\" pause=\"inf\"/>";
  for (size_t i = 1; i <= boxes.size(); ++i) {
    xml += "<button name=\"" + std::to_string(i) + "\">jump title 1;</button>";
  }
  WriteFile(dir.File("dvd.xml"), xml + "</pgc></menus></vmgm><titleset><titles><video format=\"" +
                                     format + "\"/><pgc><vob file=\"menu.mpg\"/></pgc></titles>"
                                     "</titleset></dvdauthor>\n");
  EXPECT_EQ(Shell(dir.path(), env + "dvdauthor -x dvd.xml >log 2>&1"), 0) << ReadFile(dir.File("log"));
  EXPECT_EQ(ReadFile(dir.File("log")).find("ERR:"), std::string::npos);
  EXPECT_TRUE(FileExists(dir.File("dvd/VIDEO_TS/VIDEO_TS.IFO")));
}

INSTANTIATE_TEST_SUITE_P(Renderer, DvdTools, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Ntsc" : "Pal"; });

}  // namespace
}  // namespace tolvex::test
