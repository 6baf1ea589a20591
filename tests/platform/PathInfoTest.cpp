// The looks at a path before it is used (os::LookAt and the checks beside it), on what every
// system has: files, folders and nothing.
#include <gtest/gtest.h>

#include <string>

#include "platform/Os.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

namespace os = platform::os;
using platform::StatusCode;

TEST(PathInfo, TellsWhatAPathNamesAndWhetherItMayBeReadOrWritten) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, "12345");
  os::PathInfo info;
  ASSERT_TRUE(os::LookAt(file, &info).ok());
  EXPECT_EQ(info.kind, os::PathKind::kFile);
  EXPECT_EQ(info.size, 5u);
  EXPECT_FALSE(info.readOnly);
  EXPECT_TRUE(info.ownedByCaller);
  EXPECT_TRUE(os::CheckReadable(file).ok());
  EXPECT_TRUE(os::CheckWritable(file).ok());
  MakeReadOnly(file);
  ASSERT_TRUE(os::LookAt(file, &info).ok());
  EXPECT_TRUE(info.readOnly);
  EXPECT_TRUE(os::CheckReadable(file).ok());

  ASSERT_TRUE(os::LookAt(dir.path(), &info).ok());
  EXPECT_EQ(info.kind, os::PathKind::kFolder);
  EXPECT_EQ(os::CheckReadable(dir.path()).code(), StatusCode::kIsDirectory);
  EXPECT_TRUE(os::CheckFolderWritable(dir.path()).ok());

  const std::string missing = dir.File("missing.ini");
  EXPECT_EQ(os::LookAt(missing, &info).code(), StatusCode::kNotFound);
  EXPECT_EQ(os::CheckReadable(missing).code(), StatusCode::kNotFound);
  EXPECT_FALSE(os::CheckFolderWritable(missing).ok());
  EXPECT_FALSE(os::CheckFolderWritable(file).ok());
}

}  // namespace
}  // namespace tolvex::test
