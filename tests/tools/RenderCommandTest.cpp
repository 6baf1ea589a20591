// render and resize: the pictures are made through the rendering libraries and named, and the
// preview shows one outlined area per visible button.
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

  // A mask whose folder is missing: the mask library's reason names it.
  ASSERT_EQ(RunTool({"set", file, "background", ""}).status, 0);
  ASSERT_EQ(RunTool({"set", file, "mask", dir.File("no/such/folder/mask.bmp")}).status, 0);
  rendered = RunTool({"render", file, "--force"});
  EXPECT_EQ(rendered.status, 2);
  EXPECT_NE(rendered.err.find(file + ": the mask could not be rendered: "), std::string::npos)
      << rendered.err;
  EXPECT_NE(rendered.err.find("no/such/folder"), std::string::npos) << rendered.err;
}

TEST(ResizeCommand, ScalesAPictureAndRefusesBadInput) {
  TempDir dir;
  const std::string small = dir.File("small.png");
  ToolResult resized = RunTool({"resize", ExamplePicture("button.png"), small, "64", "36"});
  ASSERT_EQ(resized.status, 0) << resized.err;
  EXPECT_EQ(ReadFile(small).substr(0, 24), PngHeader(64, 36));

  for (const auto& [from, width] : {std::pair{dir.File("none.png"), "64"},
                                    {ExamplePicture("button.png"), "wide"},
                                    {ExamplePicture("button.png"), "0"}}) {
    EXPECT_EQ(RunTool({"resize", from, dir.File("no.png"), width, "36"}).status, 2) << width;
  }
  EXPECT_FALSE(FileExists(dir.File("no.png")));
}

}  // namespace
}  // namespace tolvex::test
