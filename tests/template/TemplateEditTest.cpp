// TemplateEdit over CMenuTemplate: a page built inside an edit is byte for byte the page built
// call by call, the layout lookup and the getters see staged values, and the file changes only
// at the commit.
#include <tolvex/MenuTemplate.h>
#include <tolvex/TemplateEdit.h>

#include <gtest/gtest.h>

#include "support/FullPage.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

TEST(TemplateEdit, PageBuiltInAnEditIsTheSamePageAsCallByCall) {
  TempDir dir;
  const std::string direct = dir.File("direct.ini"), edited = dir.File("edited.ini");
  CMenuTemplate directMenu(direct.c_str()), editedMenu(edited.c_str());
  ASSERT_EQ(1, BuildFullPage(directMenu, 5));
  {
    TemplateEdit edit(editedMenu);
    ASSERT_TRUE(edit.IsOpen());
    ASSERT_EQ(1, BuildFullPage(editedMenu, 5));
    EXPECT_FALSE(FileExists(edited));
    ASSERT_TRUE(edit.Commit());
    EXPECT_FALSE(edit.IsOpen());
  }
  EXPECT_EQ(ReadFile(edited), ReadFile(direct));
}

TEST(TemplateEdit, GettersAndTheLayoutLookupSeeStagedValues) {
  TempDir dir;
  const std::string path = dir.File("menu.ini");
  CMenuTemplate menu(path.c_str());
  ASSERT_EQ(1, BuildFullPage(menu, 3));
  const std::string before = ReadFile(path);
  {
    TemplateEdit edit(menu);
    ASSERT_EQ(1, menu.SetCurrentNumOfButtons(2));
    ASSERT_EQ(1, menu.SetBtnPosition(1, tagRECT{1, 2, 3, 4}));
    tagRECT rect{};
    ASSERT_EQ(1, menu.GetBtnPosition(1, &rect));
    EXPECT_EQ(rect.left + rect.right + rect.top + rect.bottom, 10);
    unsigned count = 0;
    ASSERT_EQ(1, menu.GetCurrentNumOfButtons(&count));
    EXPECT_EQ(count, 2u);
    CMenuTemplate other(path.c_str());  // another object on the same file, same thread
    ASSERT_EQ(1, other.GetBtnPosition(1, &rect));
    EXPECT_EQ(rect.left, 1);
    EXPECT_EQ(ReadFile(path), before);
  }
  EXPECT_EQ(ReadFile(path), before);  // dropped
  CMenuTemplate unboundMenu;
  TemplateEdit unbound(unboundMenu);
  EXPECT_FALSE(unbound.IsOpen());
  EXPECT_FALSE(unbound.Commit());
}

}  // namespace
}  // namespace tolvex::test
