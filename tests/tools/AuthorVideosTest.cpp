// author, end to end, with the kinds of video people have (other frame rates, sizes and
// codecs, 16:9 DVD files, 5.1 and missing sound, a phone clip recorded on its side, names with
// spaces): what the tool says it does with each, and the disc played through libdvdnav, every
// button playing its own title in the aspect it should have, and the page's highlights.
#include "ToolRunner.h"
#include "tools/author/DvdPlayer.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace tolvex::test {
namespace {

struct Clip {
  std::string name;
  std::string make;  // ffmpeg's arguments after the input options, before the name
  double seconds;
  int aspect;        // dvdnav_get_video_aspect of its title: 0 for 4:3, 3 for 16:9
  std::string line;  // what author says of it
};

std::string Make(const Clip& clip) {
  return "ffmpeg -v error -y " + clip.make + " '" + clip.name + "'";
}

// The clips on one PAL page of `clips.size()` numbered buttons, authored into `dir`/disc with
// `extra` options; returns what the tool said.
ToolResult AuthorClips(const TempDir& dir, const std::vector<Clip>& clips,
                       const std::vector<std::string>& extra) {
  EXPECT_EQ(RunTool({"new", "page.ini", "--pal", "--buttons", std::to_string(clips.size())},
                    dir.path())
                .status, 0);
  std::vector<std::string> args = {"author", "page.ini", "--out", "disc", "--video"};
  for (const Clip& clip : clips) {
    EXPECT_TRUE(Shell(dir.path(), Make(clip))) << clip.name;
    args.push_back(clip.name);
  }
  args.insert(args.end(), extra.begin(), extra.end());
  return RunTool(args, dir.path());
}

void EachButtonPlaysItsClipInItsAspect(const std::string& disc, const std::vector<Clip>& clips) {
  DvdPlayer player(disc);
  ASSERT_TRUE(player.ok());
  Menu menu = player.RunToMenu();
  ASSERT_EQ(menu.buttons, static_cast<int>(clips.size()));
  for (int button = 1; button <= menu.buttons; ++button) {
    const Clip& clip = clips[static_cast<size_t>(button - 1)];
    player.TakeTitles();
    player.Select(button);
    player.Activate();
    std::map<int, int> aspects;
    menu = player.RunToMenu([&](int title) { aspects[title] = player.VideoAspect(); });
    const std::set<int> played = player.TakeTitles();
    ASSERT_EQ(played.size(), 1u) << clip.name;
    // The titles go into titlesets by aspect, so the clip is known by its length.
    const int title = *played.begin();
    EXPECT_NEAR(player.TitleSeconds(title), clip.seconds, 0.25) << clip.name;
    EXPECT_EQ(aspects[title], clip.aspect) << clip.name;
    EXPECT_EQ(menu.highlight, button) << clip.name;
  }
}

// The remote's menu key while button `button`'s title plays: the page again, that button
// highlighted.
void TheMenuKeyDuringATitleLeadsBackToThePage(const std::string& disc, int button) {
  DvdPlayer player(disc);
  ASSERT_TRUE(player.ok());
  const int buttons = player.RunToMenu().buttons;
  player.Select(button);
  player.Activate();
  bool pressed = false;
  const Menu menu = player.RunToMenu([&](int) {
    if (pressed) return;
    pressed = true;
    EXPECT_EQ(dvdnav_menu_call(player.nav(), DVD_MENU_Root), DVDNAV_STATUS_OK)
        << dvdnav_err_to_string(player.nav());
  });
  EXPECT_TRUE(pressed);
  EXPECT_EQ(menu.buttons, buttons);
  EXPECT_EQ(menu.highlight, button);
}

void SaysWhatItDidWithEachAndDvdauthorKeptEveryAspect(const TempDir& dir, const ToolResult& run,
                                                      const std::vector<Clip>& clips) {
  ASSERT_EQ(run.status, 0) << run.err;
  for (const Clip& clip : clips)
    EXPECT_NE(run.out.find("      " + clip.line + "\n"), std::string::npos)
        << clip.line << "\n" << run.out;
  EXPECT_NE(run.out.find("disc: "), std::string::npos) << run.out;
  // Such as "attempt to update aspect ratio from 4:3 to 16:9; skipping" (a title stretched) or
  // "Audio pts for channel 0 moves backwards".
  const std::string log = ReadFile(dir.File("disc/dvdauthor.log"));
  EXPECT_EQ(log.find("WARN"), std::string::npos) << log;
}

// A PAL disc of 4:3 and 16:9 titles: NTSC rates become 25 fps, a portrait clip is pillarboxed,
// and a PAL DVD file with sound at 44.1 kHz keeps its picture.
TEST(AuthoredVideos, PalDiscOfMixedClipsPlaysEachInItsAspect) {
  const std::vector<Clip> clips = {
      {"a25.mp4",
       "-f lavfi -i testsrc=r=25:d=1:s=320x240 -f lavfi -i sine=d=1 -c:v mpeg4 -c:a aac", 1.0, 0,
       "a25.mp4: 320x240 25 fps MPEG-4, AAC mono 44.1 kHz → PAL 4:3, 25 fps, AC-3 mono"},
      {"wide dvd é.mpg",
       "-f lavfi -i testsrc=r=30000/1001:d=1.5 -f lavfi -i sine=d=1.5 -target ntsc-dvd "
       "-aspect 16:9 -ac 2",
       1.5, 3,
       "wide dvd é.mpg: 720x480 29.97 fps MPEG-2, AC-3 stereo → PAL 16:9, 25 fps, AC-3 stereo"},
      {"d720p.mp4",
       "-f lavfi -i testsrc=r=24:d=2:s=1280x720 -f lavfi -i sine=d=2 -ac 6 -c:a aac", 2.0, 3,
       "d720p.mp4: 1280x720 24 fps H.264, AAC 5.1 44.1 kHz → PAL 16:9, 25 fps, AC-3 5.1"},
      {"g.mp4",
       "-f lavfi -i testsrc=r=30:d=2.5:s=160x90 upright.mp4 && ffmpeg -v error -i upright.mp4 "
       "-c copy -metadata:s:v:0 rotate=90",
       2.5, 0,
       "g.mp4: 160x90 turned 90° 30 fps H.264, no sound → PAL 4:3 pillarboxed, 25 fps, silent "
       "AC-3 stereo"},
      {"h.mpg",
       "-f lavfi -i testsrc=r=25:d=3 -f lavfi -i sine=d=3 -target pal-dvd -ar 44100 -ac 2", 3.0,
       0, "h.mpg: DVD MPEG-2 PAL 4:3, AC-3 stereo 44.1 kHz → picture used as it is, AC-3 stereo"},
  };
  TempDir dir;
  const ToolResult run =
      AuthorClips(dir, clips, {"--highlight", "255", "220", "0", "--select", "0", "200", "255"});
  SaysWhatItDidWithEachAndDvdauthorKeptEveryAspect(dir, run, clips);
  DvdPlayer player(dir.File("disc"));
  ASSERT_TRUE(player.ok());
  ASSERT_EQ(player.RunToMenu().buttons, 5) << "one page: no previous or next";
  ExpectHighlights(player, dir.File("disc/menus/page1-mask.bmp"), {255, 220, 0}, {0, 200, 255});
  EachButtonPlaysItsClipInItsAspect(dir.File("disc"), clips);
  TheMenuKeyDuringATitleLeadsBackToThePage(dir.File("disc"), 2);
}

}  // namespace
}  // namespace tolvex::test
