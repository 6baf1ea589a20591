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
  std::string Magic(const std::string& name, size_t n) {
    return ReadFile(dir.File(name)).substr(0, n);
  }
  TempDir dir;
};

TEST_F(Resize, WritesTheSizeAskedInTheFormatOfTheExtension) {
  WriteSolidPicture(dir.File("in.png"), 64, 32, Rgb{10, 120, 250});
  for (const char* name : {"out.bmp", "out.BMP", "out.unknown", "out"}) {
    ASSERT_NE(Run("in.png", name, 20, 10), 0) << name;
    EXPECT_EQ(Magic(name, 2), "BM") << name;
  }
  ASSERT_NE(Run("in.png", "out.png", 20, 10), 0);
  EXPECT_EQ(Magic("out.png", 4), "\x89PNG");
  ASSERT_NE(Run("out.png", "out.jpg", 300, 200), 0);  // enlarging too
  EXPECT_EQ(Magic("out.jpg", 3), "\xff\xd8\xff");

  const Picture bmp = Picture::Load(dir.File("out.bmp"));
  ASSERT_TRUE(bmp.Valid());
  EXPECT_EQ(bmp.Width(), 20);
  EXPECT_EQ(bmp.Height(), 10);
  EXPECT_EQ(CountPixels(bmp, {0, 0, 20, 10}, Rgb{10, 120, 250}), 200);
  const Picture jpg = Picture::Load(dir.File("out.jpg"));
  EXPECT_EQ(jpg.Width(), 300);
  EXPECT_EQ(jpg.Height(), 200);
}

TEST_F(Resize, ReducingAveragesInsteadOfPickingPixels) {
  // A one-pixel checkerboard reduced tenfold is an even grey, not black or white.
  GdkPixbuf* board = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 100, 100);
  guint8* px = gdk_pixbuf_get_pixels(board);
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) {
      for (int c = 0; c < 3; ++c) px[y * gdk_pixbuf_get_rowstride(board) + x * 3 + c] = (x + y) % 2 ? 255 : 0;
    }
  }
  ASSERT_TRUE(gdk_pixbuf_save(board, dir.File("board.png").c_str(), "png", nullptr, nullptr));
  g_object_unref(board);
  ASSERT_NE(Run("board.png", "grey.bmp", 10, 10), 0);
  const Picture grey = Picture::Load(dir.File("grey.bmp"));
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 10; ++x) EXPECT_NEAR(grey.At(x, y).g, 128, 12) << x << "," << y;
  }
}

TEST_F(Resize, RefusesBadSizesAndUnreadableOrAbsurdPictures) {
  WriteSolidPicture(dir.File("in.bmp"), 8, 8, kWhite);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 0, 10), 0);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 10, -1), 0);
  EXPECT_EQ(Run("in.bmp", "a.bmp", 100000, 100000), 0);
  EXPECT_EQ(Run("missing.bmp", "a.bmp", 10, 10), 0);
  EXPECT_EQ(Run("in.bmp", "no/folder/a.bmp", 10, 10), 0);
  EXPECT_FALSE(FileExists(dir.File("a.bmp")));

  std::string huge = ReadFile(dir.File("in.bmp"));
  huge[18] = 0x40, huge[19] = 0x1f;  // 8000 x 9000: 72 megapixels claimed
  huge[22] = 0x28, huge[23] = 0x23;
  WriteFile(dir.File("huge.bmp"), huge);
  EXPECT_EQ(Run("huge.bmp", "a.bmp", 10, 10), 0);
  EXPECT_FALSE(FileExists(dir.File("a.bmp")));

  std::string a = dir.File("in.bmp");
  EXPECT_EQ(ImageResize(a.data(), nullptr, 10, 10), 0);
}

}  // namespace
}  // namespace tolvex::test
