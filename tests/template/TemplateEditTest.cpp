// TemplateEdit over CMenuTemplate: a page built inside an edit is byte for byte the page built
// call by call, and the file changes only at the commit.
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

}  // namespace
}  // namespace tolvex::test
