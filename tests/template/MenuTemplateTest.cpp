// The CMenuTemplate object: its binding to a template file.
#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using MenuTemplateObject = TemplateFileTest;

CString BoundFile(CMenuTemplate& menu) {
  CString bound("unchanged");
  EXPECT_EQ(1, menu.GetTemplateFile(&bound));
  return bound;
}

TEST_F(MenuTemplateObject, BindingCreatesNothingUntilTheFirstWrite) {
  CMenuTemplate unbound;
  EXPECT_TRUE(BoundFile(unbound).IsEmpty());
  EXPECT_EQ(CString(path.c_str()), BoundFile(tpl));
  unsigned count = 0;
  EXPECT_EQ(0, tpl.GetMaxNumOfButtons(&count));
  EXPECT_FALSE(FileExists(path)) << "a getter never creates the file";
  ASSERT_EQ(1, tpl.SetMaxNumOfButtons(4));
  EXPECT_EQ("[Background]\r\nMaximumNumberOfButton=4\r\n", Bytes());
}

}  // namespace
}  // namespace tolvex::test
