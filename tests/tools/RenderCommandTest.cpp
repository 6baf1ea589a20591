// render and resize: the pictures are made through the rendering libraries and named, the
// preview shows one outlined area per visible button, and a failed rendering gives the
// library's reason.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace tolvex::test {
namespace {

TEST(RenderCommand, WritesMenuMaskAndAPreviewWithEveryButtonOutlined) {
  TempDir dir;
  ASSERT_EQ(RunTool({"new", "menu.ini", "--buttons", "3", "--max", "5", "--nav", "--background",
                     ExamplePicture("background.png"), "--button-picture",
                     ExamplePicture("button.png")},
                    dir.path())
                .status,
            0);
  ToolResult rendered = RunTool({"render", "menu.ini", "--preview", "look.png"}, dir.path());
  ASSERT_EQ(rendered.status, 0) << rendered.err;
  EXPECT_EQ(rendered.out,
            "menu: menu.bmp\nmask: menu_mask.bmp\npreview: look.png (5 button areas)\n");
  EXPECT_EQ(ReadFile(dir.File("menu.bmp")).substr(0, 2), "BM");
  EXPECT_EQ(ReadFile(dir.File("menu_mask.bmp")).substr(0, 2), "BM");
  EXPECT_EQ(ReadFile(dir.File("look.png")).substr(0, 24), PngHeader(720, 480));
  // resize hands its picture to ImageResize (whose own tests try its refusals).
  ASSERT_EQ(RunTool({"resize", "look.png", "small.png", "64", "36"}, dir.path()).status, 0);
  EXPECT_EQ(ReadFile(dir.File("small.png")).substr(0, 24), PngHeader(64, 36));

  // Without the next button the mask has one area less.
  ASSERT_EQ(RunTool({"set", "menu.ini", "nav.enabled", "no", "--nav", "next"}, dir.path()).status,
            0);
  rendered = RunTool({"render", "menu.ini", "--preview", "look.png"}, dir.path());
  EXPECT_NE(rendered.out.find("(4 button areas)"), std::string::npos) << rendered.out;
}

// Forced past check's findings, a failed rendering tells the renderer's reason.
TEST(RenderCommand, AFailedRenderingSaysWhy) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  ASSERT_EQ(RunTool({"new", file, "--background", dir.File("missing.png")}).status, 0);
  ToolResult rendered = RunTool({"render", file, "--force"});
  EXPECT_EQ(rendered.status, 2);
  EXPECT_NE(rendered.err.find(file + ": the menu picture could not be rendered: "),
            std::string::npos) << rendered.err;
  EXPECT_NE(rendered.err.find(dir.File("missing.png")), std::string::npos) << rendered.err;
}

}  // namespace
}  // namespace tolvex::test
