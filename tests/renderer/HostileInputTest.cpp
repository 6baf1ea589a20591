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

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

using namespace std::string_literals;

// What a renderer returned in a child process, its reason and the child's peak memory. A FIFO
// must not block, so a hang ends with SIGALRM and fails the test instead of stopping the suite.
struct Outcome {
  bool exited = false;
  int result = -1;
  std::string reason;
  long maxRssKb = 0;
};
Outcome InChild(const std::string& templatePath, bool mask) {
  int fds[2];
  EXPECT_EQ(pipe(fds), 0);
  const pid_t pid = fork();
  if (pid == 0) {
    alarm(60);
    std::string path = templatePath;
    const int result = templatePath.empty() ? 0
                       : mask               ? CreateMaskMenuBmp(path.data())
                                            : CreateMenuBmp(path.data());
    const std::string message = std::to_string(result) + " " +
                                (mask ? TolvexMenuMaskLastError() : TolvexMenuBmpLastError());
    _exit(write(fds[1], message.data(), message.size()) < 0 ? 3 : 0);
  }
  close(fds[1]);
  std::string message;
  char buffer[512];
  for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;) message.append(buffer, n);
  close(fds[0]);
  int status = 0;
  struct rusage usage {};
  wait4(pid, &status, 0, &usage);
  Outcome o{WIFEXITED(status) && WEXITSTATUS(status) == 0, -1, "", usage.ru_maxrss};
  if (const auto space = message.find(' '); space != std::string::npos) {
    o.result = std::stoi(message.substr(0, space));
    o.reason = message.substr(space + 1);
  }
  return o;
}

class HostileInput : public ::testing::Test {
 protected:
  HostileInput() : tpl(dir) { tpl.Page({{"NTSC", "TRUE"}, {"OutputBmp", "out.bmp"}}); }
  // A file whose header claims another size: `at` bytes of `from` set to `bytes`.
  void Patch(const std::string& from, const std::string& to, size_t at, const std::string& bytes) {
    WriteFile(dir.File(to), ReadFile(dir.File(from)).replace(at, bytes.size(), bytes));
  }
  // A sparse file: large to stat, nothing on disk.
  void Sparse(const std::string& name, off_t size, const std::string& start) {
    WriteFile(dir.File(name), start);
    EXPECT_EQ(truncate(dir.File(name).c_str(), size), 0);
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(HostileInput, PicturesThatAreNotWhatTheyClaimFailAtOnceAndSmall) {
  ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  std::filesystem::create_directory(dir.File("folder"));
  Sparse("huge.png", off_t{65} << 20, "\x89PNG\r\n\x1a\n");
  // An SVG that asks a decoder for a canvas of 64 megapixels in 118 bytes.
  WriteFile(dir.File("big.svg"),
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"7999\" height=\"7999\">"
            "<rect width=\"7999\" height=\"7999\" fill=\"red\"/></svg>");
  WriteSolidPicture(dir.File("small.bmp"), 2, 2, kRed);
  Patch("small.bmp", "liar.bmp", 18, "\x40\x1f\0\0\x40\x1f"s);  // 8000 x 8000, no pixel data
  WriteSolidPicture(dir.File("small.png"), 4, 4, kRed);
  Patch("small.png", "wide.png", 18, "\x4e\x20\0\0\x4e\x20"s);  // 20000 x 20000
  WriteSolidPicture(dir.File("whole.jpg"), 64, 64, kRed);
  WriteFile(dir.File("cut.jpg"), ReadFile(dir.File("whole.jpg")).substr(0, 300));
  WriteFile(dir.File("empty.png"), "");
  const size_t frame = ReadFile(dir.File("whole.jpg")).find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  Patch("whole.jpg", "claims.jpg", frame + 5, "\x13\x88\x13\x88");  // 5000 x 5000 in 64 x 64

  const std::pair<std::string, const char*> cases[] = {
      {dir.File("fifo"), "not a regular file"}, {"/dev/zero", "not a regular file"},
      {dir.File("folder"), "it is a folder"},   {dir.File("huge.png"), "larger than 64 MB"},
      {dir.File("big.svg"), "not a PNG, JPEG or BMP picture"},
      {dir.File("liar.bmp"), "truncated"},
      {dir.File("wide.png"), "too large: 20000 x 20000 pixels"},
      {dir.File("cut.jpg"), "is truncated"},    {dir.File("empty.png"), "empty"},
      {dir.File("claims.jpg"), "holds far too little data for the 5000 x 5000"}};
  // A child starts with the pages of this process (more under AddressSanitizer): only the
  // growth tells what the call took.
  const long limit = InChild("", false).maxRssKb + 64 * 1024;
  for (const auto& [picture, why] : cases) {
    tpl.Page("BackgroundBmp", picture);
    const Outcome o = InChild(tpl.path(), false);
    ASSERT_TRUE(o.exited) << picture << " hung or crashed";
    EXPECT_EQ(o.result, 0) << picture;
    EXPECT_PRED2(Has, o.reason, picture);
    EXPECT_PRED2(Has, o.reason, why);
    EXPECT_LT(o.maxRssKb, limit) << picture;  // the SVG alone once took 500 MB
  }
  EXPECT_FALSE(FileExists(dir.File("out.bmp")));
}

TEST_F(HostileInput, TemplatesThatAreNotRegularOrTooLargeFailAtOnce) {
  ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  Sparse("huge.ini", off_t{17} << 20, "[Background]\nNTSC=TRUE\n");
  const std::pair<std::string, const char*> cases[] = {
      {dir.File("fifo"), "not a regular file"}, {"/dev/zero", "not a regular file"},
      {dir.File("huge.ini"), "larger than 16 MB"}};
  const long limit = InChild("", false).maxRssKb + 64 * 1024;
  for (const auto& [path, why] : cases) {
    for (const bool mask : {false, true}) {
      const Outcome o = InChild(path, mask);
      ASSERT_TRUE(o.exited) << path << " hung or crashed";
      EXPECT_EQ(o.result, 0) << path;
      EXPECT_PRED2(Has, o.reason, "cannot read template " + path + ": " + why);
      EXPECT_LT(o.maxRssKb, limit) << path;
    }
  }
}

}  // namespace
}  // namespace tolvex::test
