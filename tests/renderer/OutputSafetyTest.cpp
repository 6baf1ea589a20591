// Where the renderers may write: never over their template, a picture they draw or the other
// renderer's output (whatever the spelling), never over anything but a regular file, never
// over a read-only one (as root too), never over a file that is not a picture they made;
// symbolic links are followed, a file-size limit fails the write instead of killing the caller,
// and no temporary file is left behind.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

// Whether `call` returned true in a child process, which an alarm ends so that a deadlock
// fails the test instead of hanging it.
::testing::AssertionResult InChild(const std::function<bool()>& call) {
  const pid_t pid = fork();
  if (pid == 0) {
    alarm(30);
    _exit(call() ? 0 : 1);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  if (!WIFEXITED(status)) return ::testing::AssertionFailure() << "signal " << WTERMSIG(status);
  return ::testing::AssertionResult(WEXITSTATUS(status) == 0);
}

class OutputSafety : public ::testing::Test {
 protected:
  OutputSafety() : tpl(dir) {
    tpl.Page("NTSC", "TRUE");
    WriteSolidPicture(dir.File("bg.png"), 8, 8, kBlue);
    tpl.Page("BackgroundBmp", "bg.png");
    fs::create_directory(dir.File("sub"));
  }
  // Renders with the library named and returns its reason; expects a refusal when `refused`.
  std::string Render(bool mask, bool refused) {
    const int result = mask ? CreateMaskMenuBmp(tpl.path()) : CreateMenuBmp(tpl.path());
    const std::string reason = mask ? TolvexMenuMaskLastError() : TolvexMenuBmpLastError();
    EXPECT_EQ(result == 0, refused) << reason;
    return reason;
  }
  // A picture as the renderer writes them, at `path`; returns its bytes.
  std::string OurPicture(const std::string& path) {
    std::string source = dir.File("bg.png"), target = path;
    EXPECT_NE(ImageResize(source.data(), target.data(), 3, 2), 0) << TolvexMenuBmpLastError();
    return ReadFile(path);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir.path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(OutputSafety, AnOutputThatIsAnInputOrTheOtherOutputIsRefusedHoweverSpelt) {
  fs::create_symlink("bg.png", dir.File("alias.png"));
  const std::string templateBytes = ReadFile(tpl.path());
  const std::string picture = ReadFile(dir.File("bg.png"));
  const std::tuple<bool, const char*, std::string, const char*> cases[] = {
      {false, "OutputBmp", "sub/../menu.ini", "the template itself"},
      {true, "OutMask", dir.File("menu.ini"), "the template itself"},
      {false, "OutputBmp", "./alias.png", "the picture"},
      {true, "OutMask", "bg.png", "the picture"},
      {false, "OutputBmp", "sub/../same.bmp", "the other output"},  // OutMask=same.bmp below
      {true, "OutMask", "./same.bmp", "the other output"}};
  for (const auto& [mask, key, value, why] : cases) {
    tpl.Page({{"OutputBmp", "same.bmp"}, {"OutMask", "same.bmp"}});
    tpl.Page(key, value);
    const std::string before = ReadFile(tpl.path());
    EXPECT_PRED2(Has, Render(mask, true), why) << value;
    EXPECT_EQ(ReadFile(tpl.path()), before) << value;
    EXPECT_EQ(ReadFile(dir.File("bg.png")), picture) << value;
  }
  EXPECT_FALSE(FileExists(dir.File("same.bmp")));

  // Without "OutputBmp", a template called m.bmp would be its own default output.
  TestTemplate named(dir, "m.bmp");
  named.Page("NTSC", "TRUE");
  const std::string bytes = ReadFile(dir.File("m.bmp"));
  EXPECT_EQ(CreateMenuBmp(named.path()), 0);
  EXPECT_PRED2(Has, TolvexMenuBmpLastError(), "the template itself");
  EXPECT_EQ(ReadFile(dir.File("m.bmp")), bytes);
}

TEST_F(OutputSafety, LinksAreFollowedAndOnlyWritableRegularFilesReplaced) {
  fs::create_symlink("sub/real.bmp", dir.File("link.bmp"));
  tpl.Page({{"OutputBmp", "link.bmp"}, {"OutMask", "mask.bmp"}});
  Render(false, false);
  EXPECT_TRUE(fs::is_symlink(dir.File("link.bmp")));
  EXPECT_EQ(Picture::Load(dir.File("sub/real.bmp")).At(0, 0), kBlue);

  ASSERT_EQ(mkfifo(dir.File("fifo.bmp").c_str(), 0644), 0);
  fs::create_symlink("fifo.bmp", dir.File("to-fifo.bmp"));
  const std::string locked = OurPicture(dir.File("locked.bmp"));
  chmod(dir.File("locked.bmp").c_str(), 0444);  // root may write it, but must not
  const std::pair<const char*, const char*> cases[] = {
      {"fifo.bmp", "not a regular file"}, {"to-fifo.bmp", "not a regular file"},
      {"sub", "it is a folder"},          {"locked.bmp", "the file is read-only"},
      {"no/folder.bmp", "no such file"}};
  for (const auto& [name, why] : cases) {
    for (const bool mask : {false, true}) {
      tpl.Page(mask ? "OutMask" : "OutputBmp", name);
      EXPECT_PRED2(Has, Render(mask, true), std::string(name) + ": " + why) << name;
      tpl.Page({{"OutputBmp", "link.bmp"}, {"OutMask", "mask.bmp"}});
    }
  }
  EXPECT_TRUE(fs::is_fifo(dir.File("fifo.bmp")));
  EXPECT_TRUE(fs::is_symlink(dir.File("to-fifo.bmp")));
  EXPECT_EQ(ReadFile(dir.File("locked.bmp")), locked);
  EXPECT_EQ(Names(), (std::vector<std::string>{"bg.png", "fifo.bmp", "link.bmp",
                                               "locked.bmp", "menu.ini", "sub", "to-fifo.bmp"}));
}

TEST_F(OutputSafety, AFileSizeLimitFailsTheWriteAndLeavesNoTemporary) {
  tpl.Page({{"OutputBmp", "menu.bmp"}, {"OutMask", "mask.bmp"}});
  const std::string old = OurPicture(dir.File("menu.bmp"));
  // A temporary left by a writer killed before its rename; the next write removes it.
  WriteFile(dir.File(".menu.bmp.tolvex-999999-0"), "stale");
  WriteFile(dir.File(".menu.bmp.tmp999999-0-123"), "stale");  // named by an earlier version
  WriteFile(dir.File(".menu.bmp.tmpfile"), "not ours");
  for (const bool mask : {false, true}) {
    EXPECT_TRUE(InChild([&] {
      const struct rlimit limit = {20000, 20000};  // a page's BMP is a megabyte
      setrlimit(RLIMIT_FSIZE, &limit);
      return Render(mask, true).find("too large") != std::string::npos;
    })) << "rendered, or failed for another reason";
  }
  EXPECT_EQ(ReadFile(dir.File("menu.bmp")), old);
  EXPECT_EQ(Names(), (std::vector<std::string>{".menu.bmp.tmpfile", "bg.png", "menu.bmp",
                                               "menu.ini", "sub"}));
}

TEST_F(OutputSafety, AFileTheRendererCouldNotHaveMadeIsNeverReplaced) {
  TempDir elsewhere;
  const std::string keys = elsewhere.File("victim_keys"), mask = elsewhere.File("victim_mask");
  WriteFile(keys, "ssh-ed25519 AAAA... me@host\n");
  WriteFile(mask, "BM not a picture at all");
  fs::create_symlink(keys, dir.File("to-keys.bmp"));
  std::string cut = OurPicture(dir.File("cut.bmp"));
  cut.pop_back();  // a picture of ours, but not whole
  WriteFile(dir.File("cut.bmp"), cut);
  const std::string relative = fs::relative(keys, dir.path()).string();
  const std::pair<std::string, std::string> cases[] = {
      {relative, keys}, {mask, mask}, {"to-keys.bmp", keys}, {"cut.bmp", dir.File("cut.bmp")}};
  for (const auto& [name, file] : cases) {
    const std::string before = ReadFile(file);
    for (const bool isMask : {false, true}) {
      tpl.Page({{"OutputBmp", isMask ? "menu.bmp" : name}, {"OutMask", isMask ? name : "m.bmp"}});
      EXPECT_PRED2(Has, Render(isMask, true),
                   "refusing to replace output " +
                       (name[0] == '/' ? name : dir.File(name)) +
                       ": the file there is not a BMP picture the renderer made")
          << name;
      EXPECT_EQ(ReadFile(file), before) << name;
    }
  }
  // Its own pictures, and an empty file, which holds nothing to lose, are replaced.
  tpl.Page({{"OutputBmp", "menu.bmp"}, {"OutMask", "mask.bmp"}});
  WriteFile(dir.File("mask.bmp"), "");
  for (int round = 0; round < 2; ++round) {
    Render(false, false);
    Render(true, false);
  }
  EXPECT_EQ(Picture::Load(dir.File("menu.bmp")).At(0, 0), kBlue);
}

// Rendering inside an edit of the template, on the edit's thread: the outputs are written under
// the folder lock that the edit holds, and the default names go into the edit.
TEST_F(OutputSafety, RenderingInsideAnEditOfTheTemplateNeitherWaitsNorLosesTheNames) {
  EXPECT_TRUE(InChild([&] {
    TolvexProfileEdit* edit = TolvexBeginProfileEdit(tpl.path());
    const bool done = edit && CreateMenuBmp(tpl.path()) && CreateMaskMenuBmp(tpl.path()) &&
                      TolvexCommitProfileEdit(edit);
    TolvexEndProfileEdit(edit);
    return done;
  }));
  char name[64];
  GetPrivateProfileStringA("Background", "OutputBmp", "", name, sizeof name, tpl.path());
  EXPECT_STREQ(name, "menu.bmp");
  GetPrivateProfileStringA("Background", "OutMask", "", name, sizeof name, tpl.path());
  EXPECT_STREQ(name, "menu_mask.bmp");
  EXPECT_TRUE(Picture::Load(dir.File("menu.bmp")).width > 0);
}

}  // namespace
}  // namespace tolvex::test
