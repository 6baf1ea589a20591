#include <tolvex/MenuBmp.h>

#include <gtest/gtest.h>

#include "renderer/RenderTestSupport.h"

namespace tolvex::test {
namespace {

class Resize : public ::testing::Test {
 protected:
  int Run(const std::string& from, const std::string& to, int w, int h) {
    std::string a = dir.File(from), b = dir.File(to);
    return ImageResize(a.data(), b.data(), w, h);
  }
  std::string Head(const std::string& name, size_t n) { return ReadFile(dir.File(name)).substr(0, n); }
  TempDir dir;
};

TEST_F(Resize, WritesTheSizeAskedInTheFormatOfTheExtension) {
  WriteSolidPicture(dir.File("in.png"), 64, 32, Rgb{10, 120, 250});
  for (const char* name : {"out.bmp", "out.BMP", "out.unknown", "out"}) {
    ASSERT_NE(Run("in.png", name, 20, 10), 0) << name;
    EXPECT_EQ(Head(name, 2), "BM") << name;
  }
  ASSERT_NE(Run("in.png", "out.png", 20, 10), 0);
  EXPECT_EQ(Head("out.png", 4), "\x89PNG");
  ASSERT_NE(Run("out.png", "out.jpg", 300, 200), 0);
  EXPECT_EQ(Head("out.jpg", 3), "\xff\xd8\xff");
  const Picture bmp = Picture::Load(dir.File("out.bmp"));
  EXPECT_EQ(CountPixels(bmp, {0, 0, 20, 10}, Rgb{10, 120, 250}), 200);
  EXPECT_EQ(Picture::Load(dir.File("out.jpg")).Width(), 300);

  // A one-pixel checkerboard reduced fivefold is an even grey, not picked black or white.
  std::shared_ptr<GdkPixbuf> board(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 50, 50),
                                   g_object_unref);
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 50 * 3; ++x) {
      gdk_pixbuf_get_pixels(board.get())[y * gdk_pixbuf_get_rowstride(board.get()) + x] =
          (x / 3 + y) % 2 ? 255 : 0;
    }
  }
  ASSERT_TRUE(gdk_pixbuf_save(board.get(), dir.File("board.png").c_str(), "png", nullptr, nullptr));
  ASSERT_NE(Run("board.png", "grey.bmp", 10, 10), 0);
  const Picture grey = Picture::Load(dir.File("grey.bmp"));
  for (int i = 0; i < 100; ++i) EXPECT_NEAR(grey.At(i % 10, i / 10).g, 128, 12) << i;
}

TEST_F(Resize, RefusesBadSizesAndUnreadableOrAbsurdPictures) {
  WriteSolidPicture(dir.File("in.bmp"), 8, 8, kWhite);
  std::string huge = ReadFile(dir.File("in.bmp"));
  huge[18] = 0x40, huge[19] = 0x1f, huge[22] = 0x28, huge[23] = 0x23;  // claims 8000 x 9000
  WriteFile(dir.File("huge.bmp"), huge);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 0, 10), 0);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 10, -1), 0);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 100000, 100000), 0);
  EXPECT_EQ(Run("missing.bmp", "a.bmp", 10, 10), 0);
  EXPECT_EQ(Run("huge.bmp", "a.bmp", 10, 10), 0);
  EXPECT_EQ(Run("in.bmp", "no/folder/a.bmp", 10, 10), 0);
  EXPECT_FALSE(FileExists(dir.File("a.bmp")));
}

}  // namespace
}  // namespace tolvex::test
