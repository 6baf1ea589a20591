// What a viewer sees of the menus author makes, played through libdvdnav: every button of every
// page has a selected and an activated highlight that a player draws (in the colours asked for,
// over an area holding the whole band the mask marks), pages of a disc of several are joined by
// previous and next, and a single page has neither. NTSC and PAL, one page and two.
#include "ToolRunner.h"
#include "tools/author/DvdPlayer.h"

#include "support/TempDir.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace tolvex::test {
namespace {

constexpr Rgb8 kHighlight{255, 220, 0};
constexpr Rgb8 kSelect{0, 200, 255};
constexpr int kNumbered = 2;  // numbered buttons on each page

struct Box {
  int left, top, right, bottom;  // edges included
};

// The 8-connected pieces of marked (non-black) pixels of a mask picture, as boxes.
std::vector<Box> MaskPieces(const std::string& file) {
  GError* error = nullptr;
  std::unique_ptr<GdkPixbuf, void (*)(void*)> mask(gdk_pixbuf_new_from_file(file.c_str(), &error),
                                                  g_object_unref);
  if (!mask) {
    ADD_FAILURE() << file << ": " << (error ? error->message : "unreadable");
    return {};
  }
  const int w = gdk_pixbuf_get_width(mask.get()), h = gdk_pixbuf_get_height(mask.get());
  const int n = gdk_pixbuf_get_n_channels(mask.get()), stride = gdk_pixbuf_get_rowstride(mask.get());
  const guchar* pixels = gdk_pixbuf_read_pixels(mask.get());
  std::vector<int> seen(static_cast<size_t>(w) * h, 0);
  auto marked = [&](int x, int y) {
    const guchar* p = pixels + y * stride + x * n;
    return (p[0] | p[1] | p[2]) != 0;
  };
  std::vector<Box> pieces;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (!marked(x, y) || seen[y * w + x]) continue;
      Box box{x, y, x, y};
      std::vector<std::pair<int, int>> todo{{x, y}};
      seen[y * w + x] = 1;
      while (!todo.empty()) {
        const auto [cx, cy] = todo.back();
        todo.pop_back();
        box = {std::min(box.left, cx), std::min(box.top, cy), std::max(box.right, cx),
               std::max(box.bottom, cy)};
        for (int dy = -1; dy <= 1; ++dy)
          for (int dx = -1; dx <= 1; ++dx) {
            const int nx = cx + dx, ny = cy + dy;
            if (nx < 0 || ny < 0 || nx >= w || ny >= h || seen[ny * w + nx] || !marked(nx, ny))
              continue;
            seen[ny * w + nx] = 1;
            todo.push_back({nx, ny});
          }
      }
      pieces.push_back(box);
    }
  return pieces;
}

bool Holds(const DrawnHighlight& area, const Box& band) {
  return area.left <= band.left && area.top <= band.top && area.right >= band.right &&
         area.bottom >= band.bottom;
}

std::string Describe(const DrawnHighlight& h) {
  std::string text = "area " + std::to_string(h.left) + "," + std::to_string(h.top) + " - " +
                     std::to_string(h.right) + "," + std::to_string(h.bottom) + ", kinds:";
  for (int k = 0; k < 4; ++k)
    text += " (" + std::to_string(h.colour[k].r) + " " + std::to_string(h.colour[k].g) + " " +
            std::to_string(h.colour[k].b) + " contrast " + std::to_string(h.contrast[k]) + ")";
  return text;
}

// A player draws the highlight: some pixels of the button's subpicture show, and all that show
// are in `colour` (within what the palette's YCrCb rounding loses).
void ExpectDrawnIn(const DrawnHighlight& h, Rgb8 colour, const std::string& where) {
  int shown = 0;
  for (int k = 0; k < 4; ++k) {
    if (h.contrast[k] == 0) continue;
    ++shown;
    EXPECT_NEAR(h.colour[k].r, colour.r, 12) << where << ": " << Describe(h);
    EXPECT_NEAR(h.colour[k].g, colour.g, 12) << where << ": " << Describe(h);
    EXPECT_NEAR(h.colour[k].b, colour.b, 12) << where << ": " << Describe(h);
  }
  EXPECT_GT(shown, 0) << where << ": nothing is drawn: " << Describe(h);
}

struct Disc {
  bool pal;
  int pages;
};

class AuthorHighlight : public testing::TestWithParam<Disc> {};

TEST_P(AuthorHighlight, EveryButtonShowsItsBandAndPagesConnect) {
  const Disc disc = GetParam();
  TempDir dir;
  std::vector<std::string> args = {"author"};
  for (int p = 1; p <= disc.pages; ++p) {
    const std::string page = "page" + std::to_string(p) + ".ini";
    std::vector<std::string> make = {"new", page, "--buttons", std::to_string(kNumbered),
                                     "--background", ExamplePicture("background.png")};
    if (disc.pal) make.push_back("--pal");
    ASSERT_EQ(RunTool(make, dir.path()).status, 0);
    args.push_back(page);
  }
  ASSERT_EQ(std::system(("cd '" + dir.path() + "' && ffmpeg -v error -f lavfi -i testsrc=r=" +
                         (disc.pal ? "25" : "30000/1001") + ":d=0.5:s=64x48 v.mp4")
                            .c_str()),
            0);
  args.insert(args.end(), {"--out", "disc", "--highlight", "255", "220", "0", "--select", "0",
                           "200", "255", "--video"});
  for (int v = 0; v < kNumbered * disc.pages; ++v) args.push_back("v.mp4");
  const ToolResult authored = RunTool(args, dir.path());
  ASSERT_EQ(authored.status, 0) << authored.err;

  DvdPlayer player(dir.File("disc"));
  ASSERT_TRUE(player.ok());
  const int buttons = kNumbered + (disc.pages > 1 ? 2 : 0);
  for (int p = 1; p <= disc.pages; ++p) {
    const Menu menu = player.RunToMenu();
    ASSERT_EQ(menu.buttons, buttons) << "page " << p;
    const std::vector<Box> bands = MaskPieces(dir.File("disc/menus/page" + std::to_string(p) +
                                                       "-mask.bmp"));
    ASSERT_EQ(static_cast<int>(bands.size()), buttons) << "page " << p;
    std::vector<int> held(bands.size(), 0);
    for (int b = 1; b <= buttons; ++b) {
      const std::string where = "page " + std::to_string(p) + " button " + std::to_string(b);
      const auto selected = player.Highlight(b, false), activated = player.Highlight(b, true);
      ASSERT_TRUE(selected && activated) << where;
      ExpectDrawnIn(*selected, kHighlight, where + " selected");
      ExpectDrawnIn(*activated, kSelect, where + " activated");
      int bandsHeld = 0;
      for (size_t i = 0; i < bands.size(); ++i)
        if (Holds(*selected, bands[i])) ++held[i], ++bandsHeld;
      EXPECT_EQ(bandsHeld, 1) << where << ": " << Describe(*selected);
    }
    for (size_t i = 0; i < bands.size(); ++i)
      EXPECT_EQ(held[i], 1) << "page " << p << ": band " << i << " at " << bands[i].left << ","
                            << bands[i].top << " lies in " << held[i] << " button areas";
    if (disc.pages > 1) {
      player.Select(buttons);  // next
      player.Activate();
    }
  }
  if (disc.pages > 1) {  // next from the last page wraps round, previous goes back
    Menu menu = player.RunToMenu();
    player.Select(buttons - 1);
    player.Activate();
    menu = player.RunToMenu();
    EXPECT_EQ(menu.buttons, buttons);
    EXPECT_TRUE(player.TakeTitles().empty());
  }
}

INSTANTIATE_TEST_SUITE_P(Discs, AuthorHighlight,
                         testing::Values(Disc{false, 1}, Disc{false, 2}, Disc{true, 1},
                                         Disc{true, 2}),
                         [](const testing::TestParamInfo<Disc>& info) {
                           return std::string(info.param.pal ? "Pal" : "Ntsc") +
                                  (info.param.pages > 1 ? "TwoPages" : "OnePage");
                         });

}  // namespace
}  // namespace tolvex::test
