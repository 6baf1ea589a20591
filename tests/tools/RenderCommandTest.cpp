// render and resize: the pictures are made through the rendering libraries and named, and the
// preview shows one outlined area per visible button.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

using tolvex::test::ExamplePicture;
using tolvex::test::FileExists;
using tolvex::test::ReadFile;
using tolvex::test::RunTool;
using tolvex::test::TempDir;
using tolvex::test::ToolResult;

namespace {

// Width and height from a PNG's header, or {0, 0} when `bytes` is no PNG.
std::pair<unsigned, unsigned> PngSize(const std::string& bytes) {
  if (bytes.size() < 24 || bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return {0, 0};
  auto word = [&](std::size_t at) {
    unsigned v = 0;
    for (std::size_t i = 0; i < 4; ++i) v = (v << 8) | static_cast<unsigned char>(bytes[at + i]);
    return v;
  };
  return {word(16), word(20)};
}

}  // namespace

TEST(RenderCommand, WritesMenuMaskAndAPreviewWithEveryButtonOutlined) {
  TempDir dir;
  ASSERT_EQ(RunTool({"new", "menu.ini", "--buttons", "3", "--max", "5", "--background",
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
  EXPECT_EQ(PngSize(ReadFile(dir.File("look.png"))), std::make_pair(720u, 480u));

  // Without the next button the mask has one area less.
  ASSERT_EQ(RunTool({"set", "menu.ini", "nav.enabled", "no", "--nav", "next"}, dir.path()).status,
            0);
  rendered = RunTool({"render", "menu.ini", "--preview", "look.png"}, dir.path());
  EXPECT_NE(rendered.out.find("(4 button areas)"), std::string::npos) << rendered.out;
}

TEST(RenderCommand, AFailedRenderingIsAnError) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  ASSERT_EQ(RunTool({"new", file, "--background", dir.File("missing.png")}).status, 0);
  ASSERT_EQ(RunTool({"set", file, "output", dir.File("no/such/folder/menu.bmp")}).status, 0);
  ToolResult rendered = RunTool({"render", file});
  EXPECT_EQ(rendered.status, 2);
  EXPECT_NE(rendered.err.find(file + ": the menu picture could not be rendered"),
            std::string::npos)
      << rendered.err;
}

TEST(ResizeCommand, ScalesAPictureAndRefusesBadInput) {
  TempDir dir;
  const std::string small = dir.File("small.png");
  ToolResult resized = RunTool({"resize", ExamplePicture("button.png"), small, "64", "36"});
  ASSERT_EQ(resized.status, 0) << resized.err;
  EXPECT_EQ(PngSize(ReadFile(small)), std::make_pair(64u, 36u));

  EXPECT_EQ(RunTool({"resize", dir.File("none.png"), small, "64", "36"}).status, 2);
  EXPECT_EQ(RunTool({"resize", ExamplePicture("button.png"), small, "wide", "36"}).status, 2);
  EXPECT_EQ(RunTool({"resize", ExamplePicture("button.png"), small, "0", "36"}).status, 2);
  EXPECT_FALSE(FileExists(dir.File("none.png")));
}
