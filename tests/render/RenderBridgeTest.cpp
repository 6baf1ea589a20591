// CMenuTemplate's rendering operations against the stand-ins of RenderDouble.h, which overwrite
// the path they receive: a bridge that handed over its own buffer would lose its binding.
#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <string>

#include "render/RenderDouble.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

class RenderBridge : public ::testing::Test {
 protected:
  void SetUp() override { menuBmpDouble = maskDouble = resizeDouble = {}; }

  TempDir dir_;
  CMenuTemplate menu_{dir_.File("menu.ini").c_str()};
};

TEST_F(RenderBridge, FailureReturnsEmptyAndReadsNothingButTheNewBindingStays) {
  ASSERT_EQ(menu_.SetOutputBMPFile("kept.bmp"), 1);
  menuBmpDouble.recordName = "fresh.bmp";  // failing renderers that still recorded a name
  maskDouble.recordName = "fresh_mask.bmp";
  const std::string second = dir_.File("second.ini");
  EXPECT_EQ(menu_.CreateMenuBMP(second.c_str()), "");
  EXPECT_EQ(menu_.CreateMaskBMP(), "");  // renders the new binding too
  EXPECT_EQ(menuBmpDouble.received + " " + maskDouble.received, second + " " + second);
}

TEST_F(RenderBridge, SuccessReturnsTheNameAsTheRenderedTemplateHoldsIt) {
  menuBmpDouble.result = 2;  // any nonzero result is success
  maskDouble.result = -1;
  menuBmpDouble.recordName = "pictures/Menu Page 1.BMP";
  maskDouble.recordName = "pictures/Menu Page 1_mask.BMP";
  EXPECT_EQ(menu_.CreateMenuBMP(), "pictures/Menu Page 1.BMP");
  EXPECT_EQ(menu_.CreateMaskBMP(), "pictures/Menu Page 1_mask.BMP");

  // The one-argument forms read the new template; a long name is cut to 999 characters.
  const std::string longName = std::string(600, 'a') + std::string(600, 'b');
  menuBmpDouble.recordName = maskDouble.recordName = longName;
  EXPECT_EQ(menu_.CreateMenuBMP(dir_.File("new.ini").c_str()), longName.substr(0, 999).c_str());
  EXPECT_EQ(menu_.CreateMaskBMP(dir_.File("new.ini").c_str()), longName.substr(0, 999).c_str());

  // "default", the text of a missing value, is no name.
  menuBmpDouble.recordName = maskDouble.recordName = "default";
  EXPECT_EQ(menu_.CreateMenuBMP(dir_.File("other.ini").c_str()), "");
  EXPECT_EQ(menu_.CreateMaskBMP(), "");
}

}  // namespace
}  // namespace tolvex::test
