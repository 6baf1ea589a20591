// TolvexMenuBmpLastError and TolvexMenuMaskLastError: the reason of the last failed call names
// the file and the cause, a success clears it, and each thread and library keeps its own.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

class FailureReason : public ::testing::Test {
 protected:
  FailureReason() : tpl(dir) { tpl.Page("NTSC", "TRUE"); }
  std::string MenuReason() {
    EXPECT_EQ(CreateMenuBmp(tpl.path()), 0);
    return TolvexMenuBmpLastError();
  }
  TempDir dir;
  TestTemplate tpl;
};

TEST_F(FailureReason, NamesTheFileAndTheCause) {
  tpl.Page("BackgroundBmp", "missing.png");
  EXPECT_PRED2(Has, MenuReason(), dir.File("missing.png"));

  tpl.Page({{"BackgroundBmp", ""}, {"OutputBmp", "no/folder/m.bmp"}, {"OutMask", "no/m.bmp"}});
  const std::string reason = MenuReason();
  EXPECT_PRED2(Has, reason, dir.File("no/folder/m.bmp"));
  EXPECT_PRED2(Has, reason, "no such file");
  EXPECT_EQ(CreateMaskMenuBmp(tpl.path()), 0);
  EXPECT_PRED2(Has, std::string(TolvexMenuMaskLastError()), dir.File("no/m.bmp"));
  EXPECT_EQ(reason.find('\n'), std::string::npos);

  TestTemplate absent(dir, "absent.ini");
  EXPECT_EQ(CreateMenuBmp(absent.path()), 0);
  EXPECT_PRED2(Has, std::string(TolvexMenuBmpLastError()), dir.File("absent.ini"));
  std::string in = dir.File("absent.png"), out = dir.File("out.png");
  EXPECT_EQ(ImageResize(in.data(), out.data(), 10, 10), 0);
  EXPECT_PRED2(Has, std::string(TolvexMenuBmpLastError()), in);
}

TEST_F(FailureReason, ClearedBySuccessAndKeptPerThreadAndLibrary) {
  tpl.Page("BackgroundBmp", "missing.png");
  ASSERT_EQ(CreateMenuBmp(tpl.path()), 0);
  ASSERT_NE(std::string(TolvexMenuBmpLastError()), "");
  ASSERT_NE(CreateMaskMenuBmp(tpl.path()), 0);  // the mask needs no picture
  EXPECT_STREQ(TolvexMenuMaskLastError(), "");
  EXPECT_NE(std::string(TolvexMenuBmpLastError()), "");  // the other library's success
  std::string other = "unset";
  std::thread([&] { other = TolvexMenuBmpLastError(); }).join();
  EXPECT_EQ(other, "");

  tpl.Page("BackgroundBmp", "");
  ASSERT_NE(CreateMenuBmp(tpl.path()), 0);
  EXPECT_STREQ(TolvexMenuBmpLastError(), "");
}

}  // namespace
}  // namespace tolvex::test
