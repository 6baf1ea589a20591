#include "tools/author/Assignment.h"
#include "tools/author/Colours.h"

#include "tools/cli/ToolError.h"

#include <gtest/gtest.h>

namespace menutool::author {
namespace {

std::string ErrorOf(const std::vector<PageButtons>& pages, const std::vector<std::string>& videos) {
  try {
    AssignVideos(pages, videos);
  } catch (const ToolError& error) {
    return error.what();
  }
  return "";
}

TEST(Assignment, VideosGoToThePagesButtonsInOrder) {
  const std::vector<PageButtons> pages = {{"a.ini", {1, 2, 5}}, {"b.ini", {}}, {"c.ini", {0, 7}}};
  const std::vector<Assignment> got = AssignVideos(pages, {"1", "2", "3", "4", "5"});
  ASSERT_EQ(got.size(), 5u);
  const size_t expected[][3] = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2}, {2, 0, 3}, {2, 1, 4}};
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_EQ(got[i].page, expected[i][0]) << i;
    EXPECT_EQ(got[i].button, expected[i][1]) << i;
    EXPECT_EQ(got[i].video, expected[i][2]) << i;
  }
}

TEST(Assignment, TooFewOrTooManyVideosNameWhatIsLeftPageByPage) {
  // Buttons are named by the tool's numbers (library index - 1); an older layout's button at
  // index 1 has no number.
  const std::vector<PageButtons> pages = {{"a.ini", {1, 3}}, {"b.ini", {4, 5}}};
  EXPECT_EQ(ErrorOf(pages, {"x.mp4"}),
            "1 video for 4 numbered buttons: no video for a.ini button 2, b.ini button 3 4");
  EXPECT_EQ(ErrorOf({{"a.ini", {1, 2}}}, {}),
            "0 videos for 2 numbered buttons: no video for a.ini button at library index 1 1");
  EXPECT_EQ(ErrorOf({{"a.ini", {2}}}, {"x.mp4", "y.mp4", "z.mp4"}),
            "3 videos for 1 numbered button: left over: y.mp4 z.mp4");
}

TEST(Colours, DefaultsStandOutFromTheFramesAndFromEachOther) {
  // The preferred cyan is taken by a frame: neither default may be it, nor both the same.
  const Rgb cyan{0, 220, 255};
  const ButtonColours chosen = ChooseColours({cyan});
  const auto same = [](Rgb a, Rgb b) { return a.r == b.r && a.g == b.g && a.b == b.b; };
  EXPECT_FALSE(same(chosen.highlight, cyan));
  EXPECT_FALSE(same(chosen.select, cyan));
  EXPECT_FALSE(same(chosen.highlight, chosen.select));
}

}  // namespace
}  // namespace menutool::author
