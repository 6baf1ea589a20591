// author and the user's files: whatever the flags, it never removes or overwrites a file or
// folder it did not make, never writes over an input, and keeps to one run per output.
#include "ToolRunner.h"
#include "tools/author/DvdPlayer.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

// A page with one button and its video, in `dir`.
void MakePageAndVideo(const TempDir& dir) {
  ASSERT_EQ(RunTool({"new", "page.ini", "--buttons", "1"}, dir.path()).status, 0);
  ASSERT_TRUE(Shell(dir.path(),
                    "ffmpeg -v error -f lavfi -i testsrc=r=30000/1001:s=320x240:d=0.3 v.mp4"));
}

// Whatever goes wrong, a run is ended after this many seconds, so that a test fails instead of
// hanging.
constexpr unsigned kTimeLimit = 120;

ToolResult Author(const TempDir& dir, std::vector<std::string> more) {
  std::vector<std::string> args = {"author", "page.ini", "--video", "v.mp4"};
  args.insert(args.end(), more.begin(), more.end());
  return RunTool(args, dir.path(), kTimeLimit);
}

// Every file under `folder` with its bytes, to compare before and after.
std::map<std::string, std::string> Snapshot(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    files[entry.path().string()] = entry.is_regular_file() ? ReadFile(entry.path().string()) : "/";
  return files;
}

// Nothing the run began is left beside the output: no staging folder, no unfinished image.
void ExpectNoLeftovers(const TempDir& dir) {
  for (const auto& entry : fs::directory_iterator(dir.path()))
    EXPECT_EQ(entry.path().filename().string().find(".menutemplate-"), std::string::npos)
        << entry.path();
}

TEST(AuthorSafety, RefusesOutputsThatWouldLoseTheUsersFiles) {
  TempDir dir;
  MakePageAndVideo(dir);
  fs::create_directories(dir.File("photos/2024"));
  WriteFile(dir.File("photos/2024/beach.jpg"), "a photo");
  WriteFile(dir.File("notes.txt"), "my notes");
  fs::create_directories(dir.File("disc.partial"));
  WriteFile(dir.File("disc.partial/keep"), "a folder of the user's that looks like staging");
  ASSERT_EQ(mkfifo(dir.File("fifo.mp4").c_str(), 0644), 0);
  ASSERT_EQ(RunTool({"new", "fifo.ini", "--buttons", "1"}, dir.path()).status, 0);
  ASSERT_EQ(RunTool({"set", "fifo.ini", "music", "fifo.mp4"}, dir.path()).status, 0);
  const auto before = Snapshot(dir.path());
  const struct {
    std::vector<std::string> args;
    std::string message;
  } cases[] = {
      {{"--out", "photos", "--force"}, "photos: holds files that author did not make"},
      {{"--out", ".", "--force"}, ".: is the current folder or holds it"},
      {{"--out", "..", "--force"}, "..: is the current folder or holds it"},
      {{"--out", "/", "--force"}, "/: is the root folder"},
      {{"--out", "notes.txt", "--force"}, "notes.txt: exists and is not a folder"},
      {{"--out", "disc", "--iso", "page.ini", "--force"}, "page.ini: is page.ini, which the disc"},
      {{"--out", "disc", "--iso", "notes.txt"}, "notes.txt: exists (--force replaces it)"},
      {{"--out", "disc", "--iso", "disc/x.iso"}, "lies in the output folder"},
  };
  for (const auto& c : cases) {
    const ToolResult result = Author(dir, c.args);
    EXPECT_EQ(result.status, 2) << c.message << "\n" << result.out;
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("menutemplate:", 1), std::string::npos) << "one line: " << result.err;
  }
  // FIFOs and devices, as a video or as the music, before any program opens them.
  for (const auto& [page, video] : {std::pair<std::string, std::string>{"page.ini", "fifo.mp4"},
                                    {"page.ini", "/dev/zero"}, {"fifo.ini", "v.mp4"}}) {
    const ToolResult result =
        RunTool({"author", page, "--video", video, "--out", "disc"}, dir.path(), kTimeLimit);
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find((page == "fifo.ini" ? "fifo.mp4" : video) + ": is not a plain file"),
              std::string::npos) << result.err;
  }
  EXPECT_EQ(Snapshot(dir.path()), before);

  // The home folder, from elsewhere.
  TempDir other;
  setenv("HOME", dir.File("photos").c_str(), 1);
  const ToolResult result = RunTool({"author", dir.File("page.ini"), "--video", dir.File("v.mp4"), "--out",
                    dir.File("photos"), "--force"},
                   other.path());
  unsetenv("HOME");
  EXPECT_NE(result.err.find("is your home folder"), std::string::npos) << result.err;
  EXPECT_EQ(Snapshot(dir.path()), before);
  ExpectNoLeftovers(dir);
}

TEST(AuthorSafety, ReplacesOnlyItsOwnDiscAndImageWhenAsked) {
  TempDir dir;
  MakePageAndVideo(dir);
  fs::create_directories(dir.File("empty"));
  ToolResult made = Author(dir, {"--out", "empty/", "--iso", "disc.iso"});  // an empty folder
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_TRUE(fs::exists(dir.File("empty/VIDEO_TS/VIDEO_TS.IFO")));
  const std::string image = ReadFile(dir.File("disc.iso"));
  ASSERT_GT(image.size(), 100000u);

  ToolResult again = Author(dir, {"--out", "empty", "--iso", "disc.iso"});
  EXPECT_EQ(again.status, 2);
  EXPECT_NE(again.err.find("the output folder exists (--force replaces it)"), std::string::npos)
      << again.err;
  WriteFile(dir.File("empty/my-notes.txt"), "added by the user");
  again = Author(dir, {"--out", "empty", "--iso", "disc.iso", "--force"});
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(ReadFile(dir.File("empty/my-notes.txt")), "<missing>");  // the folder was author's
  EXPECT_TRUE(fs::exists(dir.File("empty/VIDEO_TS/VIDEO_TS.IFO")));
  EXPECT_GT(ReadFile(dir.File("disc.iso")).size(), 100000u);
  ExpectNoLeftovers(dir);
}

TEST(AuthorSafety, OneRunPerOutput) {
  TempDir dir;
  MakePageAndVideo(dir);
  // A run in progress: its staging folder beside the output, marked and locked.
  const std::string staging = dir.File(".disc.menutemplate-abc123");
  fs::create_directories(staging);
  const int mark = open((staging + "/.menutemplate-disc").c_str(), O_CREAT | O_WRONLY, 0644);
  ASSERT_EQ(flock(mark, LOCK_EX), 0);
  const ToolResult result = Author(dir, {"--out", "disc"});
  close(mark);
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("another author run is making this disc"), std::string::npos)
      << result.err;
  EXPECT_TRUE(fs::exists(staging));
}

TEST(AuthorSafety, NamesAreDataAndTheEnvironmentIsTheTools) {
  TempDir dir;
  MakePageAndVideo(dir);
  ASSERT_EQ(RunTool({"new", "two.ini", "--buttons", "2"}, dir.path()).status, 0);
  // dvdauthor runs a name ending in '|' through a shell; ffmpeg reads "concat:" as a protocol.
  const std::string command = "a;cd ..;touch PWNED;|";
  const std::string odd = "line\nbreak \xe9\x01.mp4";
  ASSERT_TRUE(Shell(dir.path(), "ffmpeg -v error -f lavfi -i testsrc=r=30000/1001:d=0.3 "
                                "-s 720x480 -target ntsc-dvd dvd.mpg"));
  fs::copy_file(dir.File("dvd.mpg"), dir.File(command));
  fs::copy_file(dir.File("v.mp4"), dir.File(odd));
  setenv("VIDEO_FORMAT", "PAL", 1);
  ToolResult result =
      RunTool({"author", "two.ini", "--video", command, odd, "--out", "disc"}, dir.path());
  unsetenv("VIDEO_FORMAT");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_FALSE(fs::exists(dir.File("PWNED")));
  EXPECT_FALSE(fs::exists(dir.File("../PWNED")));
  DvdPlayer player(dir.File("disc"));
  ASSERT_TRUE(player.ok());
  ASSERT_EQ(player.RunToMenu().buttons, 2);
  uint32_t width = 0, height = 0;
  dvdnav_get_video_resolution(player.nav(), &width, &height);
  EXPECT_EQ(height, 480u) << "an NTSC disc, whatever VIDEO_FORMAT says";

  result = RunTool({"author", "two.ini", "--video", "concat:v.mp4|dvd.mpg", "v.mp4", "--out",
                    "other"},
                   dir.path());
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("concat:v.mp4|dvd.mpg: cannot read the video"), std::string::npos)
      << result.err;
}

}  // namespace
}  // namespace tolvex::test
