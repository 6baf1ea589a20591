// Where the renderers may write: never over their template, a picture they draw or the other
// renderer's output (whatever the spelling), never over anything but a regular file, never
// over a read-only one (as root too), never over a file that is not a picture they made;
// another name of a file (a link, or on Windows another case or separator) is written through,
// a file-size limit fails the write instead of killing the caller, and no temporary file is
// left behind.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "renderer/RenderTestSupport.h"
#include "renderer/SystemCases.h"

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

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
  const std::string picture = ReadFile(dir.File("bg.png"));
  const std::tuple<bool, const char*, std::string, const char*> cases[] = {
      {false, "OutputBmp", OtherSpelling(dir, "sub/../menu.ini"), "the template itself"},
      {true, "OutMask", dir.File("menu.ini"), "the template itself"},
      {false, "OutputBmp", OtherSpelling(dir, "bg.png"), "the picture"},
      {true, "OutMask", "bg.png", "the picture"},
      {false, "OutputBmp", "sub/../same.bmp", "the other output"},  // OutMask=same.bmp below
      {true, "OutMask", OtherSpelling(dir, "same.bmp"), "the other output"}};
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

TEST_F(OutputSafety, AnotherNameIsWrittenThroughAndOnlyWritableRegularFilesReplaced) {
  const std::string other = OtherSpelling(dir, "sub/real.bmp");
  tpl.Page({{"OutputBmp", other}, {"OutMask", "mask.bmp"}});
  Render(false, false);
  EXPECT_EQ(Picture::Load(dir.File("sub/real.bmp")).At(0, 0), kBlue);

  const std::string locked = OurPicture(dir.File("locked.bmp"));
  MakeReadOnly(dir.File("locked.bmp"));  // root may write it, but must not
  const std::vector<std::string> special = NotRegularFiles(dir);
  std::vector<std::pair<std::string, const char*>> cases = {
      {"sub", "it is a folder"}, {"locked.bmp", "the file is read-only"},
      {"no/folder.bmp", "no such file"}};
  for (const std::string& path : special)
    cases.push_back({path, kNotRegularOutputNamed ? "not a regular file" : ""});
  const std::vector<std::string> names = Names();
  for (const auto& [name, why] : cases) {
    for (const bool mask : {false, true}) {
      tpl.Page(mask ? "OutMask" : "OutputBmp", name);
      EXPECT_PRED2(Has, Render(mask, true), name + ": " + why) << name;
      tpl.Page({{"OutputBmp", other}, {"OutMask", "mask.bmp"}});
    }
  }
  for (const std::string& path : special) EXPECT_FALSE(fs::is_regular_file(path)) << path;
  EXPECT_EQ(ReadFile(dir.File("locked.bmp")), locked);
  EXPECT_EQ(Names(), names);
}

TEST_F(OutputSafety, AFileSizeLimitFailsTheWriteAndLeavesNoTemporary) {
  if (!kChildProcesses) GTEST_SKIP() << "Windows has no per-process file-size limit";
  tpl.Page({{"OutputBmp", "menu.bmp"}, {"OutMask", "mask.bmp"}});
  const std::string old = OurPicture(dir.File("menu.bmp"));
  // A temporary left by a writer killed before its rename; the next write removes it.
  WriteFile(dir.File(".menu.bmp.tolvex-999999-0"), "stale");
  WriteFile(dir.File(".menu.bmp.tmp999999-0-123"), "stale");  // named by an earlier version
  WriteFile(dir.File(".menu.bmp.tmpfile"), "not ours");
  for (const bool mask : {false, true}) {
    // A page's BMP is a megabyte.
    const Isolated o = RunIsolated([&] { return Render(mask, true); }, 20000);
    EXPECT_TRUE(o.finished);
    EXPECT_PRED2(Has, o.output, "too large");
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
  std::string cut = OurPicture(dir.File("cut.bmp"));
  cut.pop_back();  // a picture of ours, but not whole
  WriteFile(dir.File("cut.bmp"), cut);
  const std::string relative = fs::relative(keys, dir.path()).string();
  const std::pair<std::string, std::string> cases[] = {
      {relative, keys}, {mask, mask}, {OtherSpelling(dir, keys), keys},
      {"cut.bmp", dir.File("cut.bmp")}};
  for (const auto& [name, file] : cases) {
    const std::string before = ReadFile(file);
    for (const bool isMask : {false, true}) {
      tpl.Page({{"OutputBmp", isMask ? "menu.bmp" : name}, {"OutMask", isMask ? name : "m.bmp"}});
      EXPECT_PRED2(Has, Render(isMask, true),
                   "refusing to replace output " +
                       (fs::path(name).is_absolute() ? name : dir.File(name)) +
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

// Rendering inside an edit of the template, on the edit's thread: the page is drawn as the edit
// holds it, the outputs are written under the folder lock that the edit holds, and the default
// names go into the edit.
TEST_F(OutputSafety, RenderingInsideAnEditOfTheTemplateDrawsTheEditAndKeepsTheNames) {
  WriteSolidPicture(dir.File("red.png"), 8, 8, kRed);
  // In a child, so that a deadlock fails the test instead of hanging it.
  const Isolated o = RunIsolated([&] {
    TolvexProfileEdit* edit = TolvexBeginProfileEdit(tpl.path());
    const bool done = edit &&
                      WritePrivateProfileStringA("Background", "BackgroundBmp", "red.png",
                                                 tpl.path()) &&
                      CreateMenuBmp(tpl.path()) && CreateMaskMenuBmp(tpl.path()) &&
                      TolvexCommitProfileEdit(edit);
    TolvexEndProfileEdit(edit);
    return done ? "done" : TolvexMenuBmpLastError() + std::string(TolvexMenuMaskLastError());
  });
  EXPECT_EQ(o.output, "done");
  char name[64];
  GetPrivateProfileStringA("Background", "OutputBmp", "", name, sizeof name, tpl.path());
  EXPECT_STREQ(name, "menu.bmp");
  GetPrivateProfileStringA("Background", "OutMask", "", name, sizeof name, tpl.path());
  EXPECT_STREQ(name, "menu_mask.bmp");
  EXPECT_EQ(Picture::Load(dir.File("menu.bmp")).At(0, 0), kRed);
}

}  // namespace
}  // namespace tolvex::test
