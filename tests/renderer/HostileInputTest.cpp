// Templates and pictures that are not what they claim to be: FIFOs, devices, folders, files
// over the size limits, formats a menu does not need, headers that promise far more pixels
// than the file holds. Each fails at once, with a reason naming the file, and small.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

// What `call` returned in a child process, and the reason the child read: a FIFO must not
// block, so a hang ends with SIGALRM and fails the test instead of stopping the suite.
struct Outcome {
  bool exited = false;
  int result = -1;
  std::string reason;
  long maxRssKb = 0;  // the child's peak memory
};
Outcome InChild(const std::function<std::pair<int, std::string>()>& call) {
  int pipeFds[2];
  EXPECT_EQ(pipe(pipeFds), 0);
  const pid_t pid = fork();
  if (pid == 0) {
    close(pipeFds[0]);
    alarm(60);
    const auto [result, reason] = call();
    const std::string message = std::to_string(result) + " " + reason;
    if (write(pipeFds[1], message.data(), message.size()) < 0) _exit(3);
    _exit(0);
  }
  close(pipeFds[1]);
  std::string message;
  char buffer[512];
  for (ssize_t n; (n = read(pipeFds[0], buffer, sizeof buffer)) > 0;) message.append(buffer, n);
  close(pipeFds[0]);
  int status = 0;
  struct rusage usage {};
  wait4(pid, &status, 0, &usage);
  Outcome outcome;
  outcome.exited = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  outcome.maxRssKb = usage.ru_maxrss;
  const auto space = message.find(' ');
  if (space != std::string::npos) {
    outcome.result = std::stoi(message.substr(0, space));
    outcome.reason = message.substr(space + 1);
  }
  return outcome;
}

// The most a child may use beyond one that does nothing: it starts with the pages of this
// process (more under AddressSanitizer, and more as the suite goes on), so only the growth
// tells what the call took.
long MemoryLimitKb() {
  const Outcome idle = InChild([] { return std::make_pair(0, std::string()); });
  return idle.maxRssKb + 64 * 1024;
}

Outcome RenderMenuInChild(const std::string& templatePath) {
  return InChild([&] {
    std::string path = templatePath;
    const int result = CreateMenuBmp(path.data());
    return std::make_pair(result, std::string(TolvexMenuBmpLastError()));
  });
}

class HostileInput : public ::testing::Test {
 protected:
  HostileInput() : tpl(dir) { tpl.Page({{"NTSC", "TRUE"}, {"OutputBmp", "out.bmp"}}); }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(HostileInput, FifosDevicesAndFoldersAreRefusedWithoutWaiting) {
  ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  std::filesystem::create_directory(dir.File("folder"));
  const std::string pictures[] = {dir.File("fifo"), "/dev/zero", dir.File("folder")};
  for (const std::string& picture : pictures) {
    tpl.Page("BackgroundBmp", picture);
    const Outcome o = RenderMenuInChild(tpl.path());
    ASSERT_TRUE(o.exited) << picture << " hung or crashed";
    EXPECT_EQ(o.result, 0) << picture;
    EXPECT_PRED2(Has, o.reason, "cannot read picture " + picture) << o.reason;
  }
  // The template itself: the menu, the mask, and an image to resize.
  for (const std::string& templatePath : {dir.File("fifo"), std::string("/dev/zero")}) {
    const Outcome menu = RenderMenuInChild(templatePath);
    ASSERT_TRUE(menu.exited) << templatePath;
    EXPECT_EQ(menu.result, 0);
    EXPECT_PRED2(Has, menu.reason, "cannot read template " + templatePath + ": not a regular file");
    const Outcome mask = InChild([&] {
      std::string path = templatePath;
      const int result = CreateMaskMenuBmp(path.data());
      return std::make_pair(result, std::string(TolvexMenuMaskLastError()));
    });
    ASSERT_TRUE(mask.exited) << templatePath;
    EXPECT_EQ(mask.result, 0);
  }
  const Outcome resize = InChild([&] {
    std::string from = dir.File("fifo"), to = dir.File("small.bmp");
    return std::make_pair(ImageResize(from.data(), to.data(), 8, 8),
                          std::string(TolvexMenuBmpLastError()));
  });
  ASSERT_TRUE(resize.exited);
  EXPECT_EQ(resize.result, 0);
  EXPECT_FALSE(FileExists(dir.File("out.bmp")));
}

TEST_F(HostileInput, FilesOverTheSizeLimitsAreRefusedBeforeReading) {
  // Sparse files: large to stat, nothing on disk.
  auto sparse = [&](const std::string& name, off_t size, const std::string& start) {
    WriteFile(dir.File(name), start);
    EXPECT_EQ(truncate(dir.File(name).c_str(), size), 0);
  };
  sparse("huge.png", off_t{65} << 20, "\x89PNG\r\n\x1a\n");
  tpl.Page("BackgroundBmp", "huge.png");
  Outcome o = RenderMenuInChild(tpl.path());
  EXPECT_EQ(o.result, 0);
  EXPECT_PRED2(Has, o.reason, "huge.png: larger than 64 MB");

  sparse("huge.ini", off_t{17} << 20, "[Background]\nNTSC=TRUE\n");
  o = RenderMenuInChild(dir.File("huge.ini"));
  EXPECT_EQ(o.result, 0);
  EXPECT_PRED2(Has, o.reason, "huge.ini: larger than 16 MB");
  EXPECT_LT(o.maxRssKb, MemoryLimitKb());
}

TEST_F(HostileInput, OnlyMenuFormatsWithHonestHeadersAreDecoded) {
  // An SVG that asks a decoder for a canvas of 64 megapixels in 118 bytes.
  WriteFile(dir.File("big.svg"),
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"7999\" height=\"7999\">"
            "<rect width=\"7999\" height=\"7999\" fill=\"red\"/></svg>");
  // A 24-bit BMP header claiming 8000 x 8000 pixels, with no pixel data behind it.
  WriteSolidPicture(dir.File("liar.bmp"), 2, 2, kRed);
  std::string liar = ReadFile(dir.File("liar.bmp"));
  liar[18] = liar[22] = 0x40, liar[19] = liar[23] = 0x1f;
  WriteFile(dir.File("liar.bmp"), liar);
  // A PNG whose header claims 20000 x 20000 pixels.
  WriteSolidPicture(dir.File("wide.png"), 4, 4, kRed);
  std::string wide = ReadFile(dir.File("wide.png"));
  wide[18] = wide[22] = 0x4e, wide[19] = wide[23] = 0x20;
  WriteFile(dir.File("wide.png"), wide);
  // A JPEG cut in its pixel data, and an empty file.
  WriteSolidPicture(dir.File("whole.jpg"), 64, 64, kRed);
  WriteFile(dir.File("cut.jpg"), ReadFile(dir.File("whole.jpg")).substr(0, 300));
  WriteFile(dir.File("empty.png"), "");
  // A 64 x 64 JPEG whose frame header claims 5000 x 5000 pixels.
  std::string claims = ReadFile(dir.File("whole.jpg"));
  const size_t frame = claims.find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  claims[frame + 5] = claims[frame + 7] = 0x13, claims[frame + 6] = claims[frame + 8] = char(0x88);
  WriteFile(dir.File("claims.jpg"), claims);

  const std::pair<const char*, const char*> cases[] = {
      {"big.svg", "not a PNG, JPEG or BMP picture"}, {"liar.bmp", "truncated"},
      {"wide.png", "too large: 20000 x 20000 pixels"}, {"cut.jpg", "is truncated"},
      {"empty.png", "empty"}, {"claims.jpg", "holds far too little data for the 5000 x 5000"}};
  const long limit = MemoryLimitKb();
  for (const auto& [name, why] : cases) {
    tpl.Page("BackgroundBmp", name);
    const Outcome o = RenderMenuInChild(tpl.path());
    ASSERT_TRUE(o.exited) << name;
    EXPECT_EQ(o.result, 0) << name;
    EXPECT_PRED2(Has, o.reason, dir.File(name)) << name;
    EXPECT_PRED2(Has, o.reason, why) << name;
    EXPECT_LT(o.maxRssKb, limit) << name;  // the SVG alone once took 500 MB
  }
  EXPECT_FALSE(FileExists(dir.File("out.bmp")));
}

}  // namespace
}  // namespace tolvex::test
