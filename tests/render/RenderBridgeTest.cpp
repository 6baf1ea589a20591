// CMenuTemplate's rendering operations against stand-ins of the rendering libraries
// (RenderDouble.h), on real template files.
#include <tolvex/MenuTemplate.h>
#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "render/RenderDouble.h"
#include "support/TempDir.h"

class CMenuTemplateInspector {
 public:
  static CString OutputBmpFile(const CMenuTemplate& menu) { return menu.m_strOutputBmpFile; }
};

namespace tolvex::test {
namespace {

std::string Str(const CString& text) {
  return std::string(text.GetString(), static_cast<size_t>(text.GetLength()));
}

std::string BoundPath(CMenuTemplate& menu) {
  CString path;
  menu.GetTemplateFile(&path);
  return Str(path);
}

std::string OutputBmpMember(const CMenuTemplate& menu) {
  return Str(CMenuTemplateInspector::OutputBmpFile(menu));
}

class RenderBridge : public ::testing::Test {
 protected:
  void SetUp() override { ResetRenderDoubles(); }
  void TearDown() override { ResetRenderDoubles(); }

  TempDir dir_;
  std::string path_ = dir_.File("menu.ini");
};

TEST_F(RenderBridge, FailedRenderLeavesOutputNameAlone) {
  CMenuTemplate menu(path_.c_str());
  ASSERT_EQ(menu.SetOutputBMPFile("kept.bmp"), 1);
  // Failing renderers that still recorded a name: the name must not be read.
  MenuBmpDouble().recordName = "fresh.bmp";
  MaskDouble().recordName = "fresh_mask.bmp";

  EXPECT_EQ(Str(menu.CreateMenuBMP()), "");
  EXPECT_EQ(Str(menu.CreateMaskBMP()), "");

  EXPECT_EQ(MenuBmpDouble().calls, 1);
  EXPECT_EQ(MaskDouble().calls, 1);
  EXPECT_EQ(OutputBmpMember(menu), "kept.bmp");
}

TEST_F(RenderBridge, OneArgumentFormsRebindEvenWhenRenderingFails) {
  CMenuTemplate menu(path_.c_str());
  const std::string second = dir_.File("second.ini");
  const std::string third = dir_.File("third.ini");

  EXPECT_EQ(Str(menu.CreateMenuBMP(second.c_str())), "");
  EXPECT_EQ(MenuBmpDouble().lastPath, second);
  EXPECT_EQ(BoundPath(menu), second);

  EXPECT_EQ(Str(menu.CreateMaskBMP(third.c_str())), "");
  EXPECT_EQ(MaskDouble().lastPath, third);
  EXPECT_EQ(BoundPath(menu), third);
}

TEST_F(RenderBridge, SuccessReturnsTheNameAsTheFileHoldsIt) {
  CMenuTemplate menu(path_.c_str());
  MenuBmpDouble().result = 2;  // any nonzero result is success
  MenuBmpDouble().recordName = "pictures/Menu Page 1.BMP";
  MaskDouble().result = -1;
  MaskDouble().recordName = "pictures/Menu Page 1_mask.BMP";

  EXPECT_EQ(Str(menu.CreateMenuBMP()), "pictures/Menu Page 1.BMP");
  EXPECT_EQ(OutputBmpMember(menu), "pictures/Menu Page 1.BMP");
  EXPECT_EQ(Str(menu.CreateMaskBMP()), "pictures/Menu Page 1_mask.BMP");
  EXPECT_EQ(MenuBmpDouble().lastPath, path_);
  EXPECT_EQ(MaskDouble().lastPath, path_);
}

TEST_F(RenderBridge, OneArgumentFormsReadTheNameFromTheNewTemplate) {
  CMenuTemplate menu(path_.c_str());
  ASSERT_EQ(menu.SetOutputBMPFile("old.bmp"), 1);
  ASSERT_EQ(menu.SetOutMaskFile("old_mask.bmp"), 1);
  MenuBmpDouble().result = 1;
  MenuBmpDouble().recordName = "new.bmp";
  MaskDouble().result = 1;
  MaskDouble().recordName = "new_mask.bmp";

  EXPECT_EQ(Str(menu.CreateMenuBMP(dir_.File("new.ini").c_str())), "new.bmp");
  EXPECT_EQ(Str(menu.CreateMaskBMP(dir_.File("new.ini").c_str())), "new_mask.bmp");
}

TEST_F(RenderBridge, SuccessCutsALongNameTo999Characters) {
  std::string longName;
  for (int i = 0; i < 1200; ++i) longName += static_cast<char>('a' + i % 26);
  CMenuTemplate menu(path_.c_str());
  MenuBmpDouble().result = 1;
  MenuBmpDouble().recordName = longName;
  MaskDouble().result = 1;
  MaskDouble().recordName = longName;

  EXPECT_EQ(Str(menu.CreateMenuBMP()), longName.substr(0, 999));
  EXPECT_EQ(Str(menu.CreateMaskBMP()), longName.substr(0, 999));
}

TEST_F(RenderBridge, SuccessWithoutANameReturnsEmpty) {
  CMenuTemplate menu(path_.c_str());
  ASSERT_EQ(menu.SetOutputBMPFile("earlier.bmp"), 1);
  ASSERT_TRUE(WritePrivateProfileStringA("Background", "OutputBmp", nullptr, path_.c_str()));
  ASSERT_EQ(menu.SetBkBMPFileName("back.bmp"), 1);
  MenuBmpDouble().result = 1;
  MaskDouble().result = 1;

  EXPECT_EQ(Str(menu.CreateMenuBMP()), "");
  EXPECT_EQ(Str(menu.CreateMaskBMP()), "");
  EXPECT_EQ(OutputBmpMember(menu), "earlier.bmp");

  // "default" is the reserved text of a missing value.
  MenuBmpDouble().recordName = "default";
  MaskDouble().recordName = "default";
  EXPECT_EQ(Str(menu.CreateMenuBMP()), "");
  EXPECT_EQ(Str(menu.CreateMaskBMP()), "");
  EXPECT_EQ(OutputBmpMember(menu), "earlier.bmp");
}

TEST_F(RenderBridge, RenderersReceiveThePathAsGiven) {
  CMenuTemplate unbound;
  unbound.CreateMenuBMP();
  EXPECT_EQ(MenuBmpDouble().calls, 1);
  EXPECT_EQ(MenuBmpDouble().lastPath, "");

  CMenuTemplate relative("menus/../menu 1.ini");
  relative.CreateMaskBMP();
  EXPECT_EQ(MaskDouble().calls, 1);
  EXPECT_EQ(MaskDouble().lastPath, "menus/../menu 1.ini");
}

TEST_F(RenderBridge, RendererWritingIntoThePathLeavesTheBindingIntact) {
  CMenuTemplate menu(path_.c_str());
  for (RenderDouble* renderer : {&MenuBmpDouble(), &MaskDouble()}) {
    renderer->result = 1;
    renderer->recordName = "menu.bmp";
    renderer->scribbleOnPath = true;
  }

  EXPECT_EQ(Str(menu.CreateMenuBMP()), "menu.bmp");
  EXPECT_EQ(BoundPath(menu), path_);
  EXPECT_EQ(Str(menu.CreateMaskBMP()), "menu.bmp");
  EXPECT_EQ(BoundPath(menu), path_);
}

TEST_F(RenderBridge, ResizeImagePassesItsArgumentsThroughInOrder) {
  CMenuTemplate menu;
  ImageResizeDouble().result = 1;

  EXPECT_EQ(menu.ResizeImage("in/source picture.png", "out/target.bmp", 720, 480), 1);
  EXPECT_EQ(ImageResizeDouble().calls, 1);
  EXPECT_EQ(ImageResizeDouble().source, "in/source picture.png");
  EXPECT_EQ(ImageResizeDouble().target, "out/target.bmp");
  EXPECT_EQ(ImageResizeDouble().width, 720);
  EXPECT_EQ(ImageResizeDouble().height, 480);

  // Sizes above INT_MAX arrive as the int of the same bits.
  EXPECT_EQ(menu.ResizeImage("a.bmp", "b.bmp", 0x80000000u, 0xFFFFFFFFu), 1);
  EXPECT_EQ(ImageResizeDouble().width, INT_MIN);
  EXPECT_EQ(ImageResizeDouble().height, -1);
}

TEST_F(RenderBridge, ResizeImageMapsAnyNonzeroResultToOne) {
  CMenuTemplate menu;
  for (int result : {0, 1, 2, -1, INT_MIN}) {
    ImageResizeDouble().result = result;
    EXPECT_EQ(menu.ResizeImage("a.bmp", "b.bmp", 16, 9), result != 0 ? 1 : 0) << result;
  }
  EXPECT_EQ(ImageResizeDouble().calls, 5);
}

}  // namespace
}  // namespace tolvex::test
