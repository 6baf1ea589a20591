#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using MenuTemplateObject = TemplateFileTest;

TEST_F(MenuTemplateObject, DefaultObjectIsUnboundAndReachesNoFile) {
  CMenuTemplate unbound;
  CString path("unchanged");
  EXPECT_EQ(1, unbound.GetTemplateFile(&path));
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_EQ(0, unbound.SetMaxNumOfButtons(3));  // an empty path cannot be written
  unsigned count = 7;
  EXPECT_EQ(0, unbound.GetMaxNumOfButtons(&count));
  EXPECT_EQ(7u, count);
}

TEST_F(MenuTemplateObject, BindingCreatesNothingUntilTheFirstWrite) {
  EXPECT_FALSE(FileExists(path));
  CString bound;
  tpl.GetTemplateFile(&bound);
  EXPECT_EQ(CString(path.c_str()), bound);
  unsigned count = 0;
  EXPECT_EQ(0, tpl.GetMaxNumOfButtons(&count));
  EXPECT_FALSE(FileExists(path));
  ASSERT_EQ(1, tpl.SetMaxNumOfButtons(4));
  EXPECT_EQ("[Background]\r\nMaximumNumberOfButton=4\r\n", Bytes());
}

TEST_F(MenuTemplateObject, CopiesAreBoundToTheSameFileAndIndependent) {
  tpl.SetMusicFileName("a.mp2");
  tpl.SetTemplateMode(5);
  CMenuTemplate copy(tpl);
  CMenuTemplate assigned;
  assigned = tpl;
  for (CMenuTemplate* other : {&copy, &assigned}) {
    CString bound;
    other->GetTemplateFile(&bound);
    EXPECT_EQ(CString(path.c_str()), bound);
    EXPECT_EQ("a.mp2", CMenuTemplateInspector::MusicFileName(*other));
    EXPECT_EQ(5, CMenuTemplateInspector::TemplateMode(*other));
  }
  copy.SetMusicFileName("b.mp2");
  copy.SetTemplateFile("elsewhere.ini");
  EXPECT_EQ("a.mp2", CMenuTemplateInspector::MusicFileName(tpl));
  CString bound;
  tpl.GetTemplateFile(&bound);
  EXPECT_EQ(CString(path.c_str()), bound);

  assigned = assigned;  // self-assignment keeps everything
  EXPECT_EQ("a.mp2", CMenuTemplateInspector::MusicFileName(assigned));
}

TEST_F(MenuTemplateObject, RebindingKeepsCachedValuesAndMovesEveryCall) {
  tpl.SetOutputBMPFile("menu.bmp");
  const std::string other = dir.File("other.ini");
  EXPECT_EQ(1, tpl.SetTemplateFile(other.c_str()));
  EXPECT_EQ("menu.bmp", CMenuTemplateInspector::OutputBmpFile(tpl));
  tpl.SetOutMaskFile("mask.bmp");
  EXPECT_EQ("[Background]\r\nOutMask=mask.bmp\r\n", ReadFile(other));
  EXPECT_EQ(std::nullopt, Key("Background", "OutMask"));
}

TEST_F(MenuTemplateObject, CopyTemplateFileReplacesTargetAndStaysBound) {
  tpl.SetMaxNumOfButtons(6);
  const std::string target = dir.File("copy.ini");
  WriteFile(target, "old content");
  EXPECT_EQ(CString(target.c_str()), tpl.CopyTemplateFile(target.c_str()));
  EXPECT_EQ(Bytes(), ReadFile(target));
  CString bound;
  tpl.GetTemplateFile(&bound);
  EXPECT_EQ(CString(path.c_str()), bound);

  const std::string second = dir.File("second.ini");
  EXPECT_EQ(CString(second.c_str()), tpl.CopyTemplateFile(second.c_str(), target.c_str()));
  EXPECT_EQ(Bytes(), ReadFile(second));
}

TEST_F(MenuTemplateObject, CopyTemplateFileOfMissingOrUnboundFileReturnsNewPathAndCreatesNothing) {
  const std::string target = dir.File("copy.ini");
  EXPECT_EQ(CString(target.c_str()), tpl.CopyTemplateFile(target.c_str()));
  EXPECT_FALSE(FileExists(target));
  CMenuTemplate unbound;
  EXPECT_EQ(CString(target.c_str()), unbound.CopyTemplateFile(target.c_str()));
  EXPECT_FALSE(FileExists(target));
}

}  // namespace
}  // namespace tolvex::test
