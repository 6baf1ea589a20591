// Templates and pictures that are not what they claim to be: FIFOs, devices, folders, files
// over the size limits, formats a menu does not need, headers that promise far more pixels
// than the file holds. Each fails at once, with a reason naming the file, and small.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "renderer/RenderTestSupport.h"
#include "renderer/SystemCases.h"

namespace tolvex::test {
namespace {

using namespace std::string_literals;

// What a renderer returned and its reason, from a call that cannot hang the suite (on a FIFO).
struct Outcome : Isolated {
  int result = -1;
  std::string reason;
};
Outcome InChild(const std::string& templatePath, bool mask) {
  Outcome o{RunIsolated([&] {
    std::string path = templatePath;
    const int result = templatePath.empty() ? 0
                       : mask               ? CreateMaskMenuBmp(path.data())
                                            : CreateMenuBmp(path.data());
    return std::to_string(result) + " " +
           (mask ? TolvexMenuMaskLastError() : TolvexMenuBmpLastError());
  }), -1, ""};
  if (const auto space = o.output.find(' '); space != std::string::npos) {
    o.result = std::stoi(o.output.substr(0, space));
    o.reason = o.output.substr(space + 1);
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
  void Sparse(const std::string& name, uintmax_t size, const std::string& start) {
    WriteFile(dir.File(name), start);
    std::filesystem::resize_file(dir.File(name), size);
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(HostileInput, PicturesThatAreNotWhatTheyClaimFailAtOnceAndSmall) {
  std::filesystem::create_directory(dir.File("folder"));
  Sparse("huge.png", uintmax_t{65} << 20, "\x89PNG\r\n\x1a\n");
  // An SVG that asks a decoder for a canvas of 64 megapixels in 118 bytes.
  WriteFile(dir.File("big.svg"),
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"7999\" height=\"7999\">"
            "<rect width=\"7999\" height=\"7999\" fill=\"red\"/></svg>");
  WriteSolidPicture(dir.File("small.bmp"), 2, 2, kRed);
  Patch("small.bmp", "liar.bmp", 18, "\x40\x1f\0\0\x40\x1f"s);  // 8000 x 8000, no pixel data
  WriteFile(dir.File("empty.png"), "");
  // Varied pixels, so that half the file holds some rows: the PNG decoder stops there without
  // an error.
  WritePicture(dir.File("whole.png"), 64, 64, [](int x, int y) {
    return Rgb{static_cast<uint8_t>(x * 37 + y * 11), static_cast<uint8_t>(x ^ y),
               static_cast<uint8_t>(y * 53)};
  });
  std::string png = dir.File("whole.png"), jpeg = dir.File("whole.jpg");
  ASSERT_NE(ImageResize(png.data(), jpeg.data(), 64, 64), 0);
  png = ReadFile(png);
  WriteFile(dir.File("cut.png"), png.substr(0, png.size() / 2));
  const size_t frame = ReadFile(dir.File("whole.jpg")).find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  Patch("whole.jpg", "claims.jpg", frame + 5, "\x13\x88\x13\x88");  // 5000 x 5000 in 64 x 64

  std::vector<std::pair<std::string, const char*>> cases = {
      {dir.File("folder"), "it is a folder"},   {dir.File("huge.png"), "larger than 64 MB"},
      {dir.File("big.svg"), "not a PNG, JPEG or BMP picture"},
      {dir.File("liar.bmp"), "truncated"},
      {dir.File("empty.png"), "empty"},
      {dir.File("cut.png"), "is truncated or corrupt"},
      {dir.File("claims.jpg"), "holds far too little data for the 5000 x 5000"}};
  for (const std::string& path : NotRegularFiles(dir))
    cases.push_back({path, "not a regular file"});
  // A child starts with the pages of this process (more under AddressSanitizer): only the
  // growth tells what the call took.
  const long limit = InChild("", false).peakKb + 64 * 1024;
  for (const auto& [picture, why] : cases) {
    tpl.Page("BackgroundBmp", picture);
    const Outcome o = InChild(tpl.path(), false);
    ASSERT_TRUE(o.finished) << picture << " hung or crashed";
    EXPECT_EQ(o.result, 0) << picture;
    EXPECT_PRED2(Has, o.reason, picture);
    EXPECT_PRED2(Has, o.reason, why);
    if (kChildProcesses) { EXPECT_LT(o.peakKb, limit) << picture; }  // SVG: once 500 MB
  }
  EXPECT_FALSE(FileExists(dir.File("out.bmp")));
}

TEST_F(HostileInput, TemplatesThatAreNotRegularOrTooLargeFailAtOnce) {
  Sparse("huge.ini", uintmax_t{17} << 20, "[Background]\nNTSC=TRUE\n");
  std::vector<std::pair<std::string, const char*>> cases = {
      {dir.File("huge.ini"), "larger than 16 MB"}};
  for (const std::string& path : NotRegularFiles(dir))
    cases.push_back({path, "not a regular file"});
  const long limit = InChild("", false).peakKb + 64 * 1024;
  for (const auto& [path, why] : cases) {
    for (const bool mask : {false, true}) {
      const Outcome o = InChild(path, mask);
      ASSERT_TRUE(o.finished) << path << " hung or crashed";
      EXPECT_EQ(o.result, 0) << path;
      EXPECT_PRED2(Has, o.reason, "cannot read template " + path + ": " + why);
      if (kChildProcesses) { EXPECT_LT(o.peakKb, limit) << path; }
    }
  }
}

}  // namespace
}  // namespace tolvex::test
