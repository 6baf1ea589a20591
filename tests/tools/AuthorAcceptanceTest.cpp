// author, end to end: a disc of two pages (3 and 2 numbered buttons, previous and next on both)
// and five short generated videos, one of them DVD MPEG-2 already, played through libdvdnav as
// a player would: every button shows its highlight in the colours asked for over the band its
// mask marks, buttons play their own videos, a video's end returns to its button, previous and
// next switch pages, and the arrow keys reach every button. Also the one-line errors.
#include "ToolRunner.h"
#include "tools/author/DvdPlayer.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace tolvex::test {
namespace {

// The videos: title n lasts kSeconds[n - 1], so a played title is known by its length too.
constexpr double kSeconds[] = {1.0, 1.5, 2.0, 2.5, 3.0};
constexpr int kReadyVideo = 2;  // made as DVD MPEG-2, used as it is
constexpr int kPageButtons[] = {5, 4};  // numbered buttons, then previous and next
constexpr Rgb8 kSelected{255, 220, 0}, kActivated{0, 200, 255};

// The page a menu is, known by its button count.
int PageOf(const Menu& menu) { return menu.buttons == kPageButtons[0] ? 1 : menu.buttons ? 2 : 0; }

// Authors the disc in `dir`; returns what the tool said.
ToolResult AuthorDisc(const std::string& dir) {
  for (int buttons : {3, 2}) {
    const std::string page = "page" + std::to_string(buttons) + ".ini";
    EXPECT_EQ(RunTool({"new", page, "--nav", "--buttons", std::to_string(buttons), "--background",
                       ExamplePicture("background.png")},
                      dir).status, 0);
  }
  std::vector<std::string> args = {"author", "page3.ini", "page2.ini", "--out", "disc", "--iso",
                                   "disc.iso", "--highlight", "255", "220", "0", "--select", "0",
                                   "200", "255", "--video"};
  for (int n = 1; n <= 5; ++n) {
    const std::string name = "v" + std::to_string(n) + (n == kReadyVideo ? ".mpg" : ".mp4");
    const std::string seconds = std::to_string(kSeconds[n - 1]);
    const std::string options =
        n == kReadyVideo ? "-f lavfi -i sine=d=" + seconds + " -target ntsc-dvd -ac 2"
                         : "-s 160x120";
    EXPECT_TRUE(Shell(dir, "ffmpeg -v error -f lavfi -i testsrc=r=30000/1001:d=" + seconds + " " +
                               options + " " + name));
    args.push_back(name);
  }
  return RunTool(args, dir);
}

void SaysWhatItDidAndKeepsTheXml(const TempDir& dir, const std::string& out) {
  EXPECT_NE(out.find("v2.mpg: DVD MPEG-2 NTSC 4:3, used as it is"), std::string::npos) << out;
  EXPECT_NE(out.find("v1.mp4: 160x120 29.97 fps H.264, no sound → NTSC 4:3, 29.97 fps, silent "
                     "AC-3 stereo"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("VIDEO_TS: " + dir.File("disc/VIDEO_TS")), std::string::npos) << out;
  for (const char* kept : {"dvdauthor.xml", "page2-spumux.xml", "menus/page2-preview.png"})
    EXPECT_NE(ReadFile(dir.File(std::string("disc/") + kept)), "<missing>") << kept;
}

// Page 1's previous button wraps round to page 2, whose next button wraps back to page 1.
void EachNumberedButtonPlaysItsVideoAndItsEndReturnsToTheButton(DvdPlayer* player) {
  Menu menu = player->RunToMenu();
  ASSERT_EQ(PageOf(menu), 1);
  EXPECT_EQ(menu.highlight, 1);
  int title = 0;
  for (int page = 1; page <= 2; ++page) {
    const int numbered = kPageButtons[page - 1] - 2;
    for (int button = 1; button <= numbered; ++button) {
      ++title;
      player->TakeTitles();
      player->Select(button);
      player->Activate();
      menu = player->RunToMenu();
      EXPECT_EQ(player->TakeTitles(), std::set<int>{title})
          << "page " << page << " button " << button;
      EXPECT_NEAR(player->TitleSeconds(title), kSeconds[title - 1], 0.25) << "title " << title;
      EXPECT_EQ(PageOf(menu), page);
      EXPECT_EQ(menu.highlight, button);
    }
    player->Select(kPageButtons[page - 1] - (page == 1 ? 1 : 0));  // previous, then next
    player->Activate();
    menu = player->RunToMenu();
    ASSERT_EQ(PageOf(menu), page == 1 ? 2 : 1);
  }
}

void ArrowKeysReachEveryButtonFromTheFirst(DvdPlayer* player) {
  ASSERT_EQ(PageOf(player->RunToMenu()), 1);
  for (int page = 1; page <= 2; ++page) {
    std::set<int> reached = {1};
    std::vector<int> todo = {1};
    while (!todo.empty()) {
      const int from = todo.back();
      todo.pop_back();
      for (auto arrow : {dvdnav_upper_button_select, dvdnav_lower_button_select,
                         dvdnav_left_button_select, dvdnav_right_button_select}) {
        player->Select(from);
        ASSERT_EQ(arrow(player->nav(), player->Pci()), DVDNAV_STATUS_OK);
        if (reached.insert(player->Highlight()).second) todo.push_back(player->Highlight());
      }
    }
    std::set<int> all;
    for (int b = 1; b <= kPageButtons[page - 1]; ++b) all.insert(b);
    EXPECT_EQ(reached, all) << "page " << page;
    player->Select(kPageButtons[page - 1]);  // next
    player->Activate();
    ASSERT_EQ(PageOf(player->RunToMenu()), page == 1 ? 2 : 1);
  }
}

// One disc for all checks, since authoring it is the slow part; each check plays it afresh.
TEST(AuthoredDisc, PlaysAsAPlayerNavigatesIt) {
  TempDir dir;
  const ToolResult authored = AuthorDisc(dir.path());
  ASSERT_EQ(authored.status, 0) << authored.err;
  SaysWhatItDidAndKeepsTheXml(dir, authored.out);
  DvdPlayer viewer(dir.File("disc"));
  ASSERT_TRUE(viewer.ok());
  for (int page = 1; page <= 2; ++page) {
    ASSERT_EQ(PageOf(viewer.RunToMenu()), page);
    ExpectHighlights(viewer, dir.File("disc/menus/page" + std::to_string(page) + "-mask.bmp"),
                     kSelected, kActivated);
    viewer.Select(kPageButtons[page - 1]);  // next
    viewer.Activate();
  }
  for (auto check : {EachNumberedButtonPlaysItsVideoAndItsEndReturnsToTheButton,
                     ArrowKeysReachEveryButtonFromTheFirst}) {
    DvdPlayer player(dir.File("disc"));
    ASSERT_TRUE(player.ok());
    check(&player);
  }
  // The disc image holds the same disc.
  DvdPlayer image(dir.File("disc.iso"));
  ASSERT_TRUE(image.ok());
  EXPECT_EQ(PageOf(image.RunToMenu()), 1);
}

TEST(AuthorCommand, RefusesBadInputWithOneClearLine) {
  TempDir dir;
  ASSERT_EQ(RunTool({"new", "ntsc.ini", "--buttons", "2"}, dir.path()).status, 0);
  ASSERT_EQ(RunTool({"new", "pal.ini", "--buttons", "1", "--pal"}, dir.path()).status, 0);
  // A page whose first caption runs over its neighbour: check's error stops author.
  ASSERT_EQ(RunTool({"new", "over.ini", "--buttons", "2"}, dir.path()).status, 0);
  ASSERT_EQ(RunTool({"set", "over.ini", "button.title.position", "300", "338", "--button", "1"},
                    dir.path()).status, 0);
  std::string big = "[Background]\nNTSC=TRUE\nCurrentNumberOfButton=37\n[NumOfButton37]\n";
  for (int i = 1; i <= 37; ++i) {
    const std::string at = "ButtonPosition" + std::to_string(i);
    big += at + "_left=" + std::to_string(i * 10) + "\n" + at + "_right=" +
           std::to_string(i * 10 + 8) + "\n" + at + "_top=100\n" + at + "_bottom=120\n";
  }
  WriteFile(dir.File("big.ini"), big);
  ASSERT_TRUE(
      Shell(dir.path(), "ffmpeg -v error -f lavfi -i testsrc=r=30000/1001:d=0.2 -s 64x48 a.mp4"));
  ASSERT_TRUE(Shell(dir.path(), "echo not a video > bad.mp4"));
  const struct {
    std::vector<std::string> args;
    std::string message;
  } cases[] = {
      {{"over.ini", "--video", "a.mp4", "a.mp4", "--out", "o"},
       "1 error found by check; no disc made"},
      {{"ntsc.ini", "pal.ini", "--video", "a.mp4", "--out", "o"},
       "pal.ini: a PAL page among NTSC pages: a disc has one television standard"},
      {{"ntsc.ini", "--video", "a.mp4", "bad.mp4", "--out", "o"}, "bad.mp4: cannot read the video"},
      {{"big.ini", "--video", "a.mp4", "--out", "o"},
       "big.ini: 37 buttons on the page; a DVD menu takes at most 36"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> args = {"author"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    const ToolResult result = RunTool(args, dir.path());
    EXPECT_EQ(result.status, 2) << c.message;
    EXPECT_EQ(result.err.rfind("menutemplate: " + c.message, 0), 0u) << result.err;
    // One line (a leak checker may add its summary after it).
    EXPECT_EQ(result.err.find("menutemplate:", 1), std::string::npos) << result.err;
  }
  EXPECT_EQ(ReadFile(dir.File("o")), "<missing>");
}

}  // namespace
}  // namespace tolvex::test
