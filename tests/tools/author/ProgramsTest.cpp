#include "tools/author/Programs.h"

#include "tools/cli/ToolError.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace menutool::author {
namespace {

TEST(Programs, AMissingProgramNamesTheDebianPackageThatBringsIt) {
  tolvex::test::TempDir empty;
  const std::string saved = std::getenv("PATH") ? std::getenv("PATH") : "";
  setenv("PATH", empty.path().c_str(), 1);
  std::string message;
  try {
    RequireProgram("spumux", "dvdauthor");
  } catch (const ToolError& error) {
    message = error.what();
  }
  setenv("PATH", saved.c_str(), 1);
  EXPECT_EQ(message, "spumux not found: install the Debian package dvdauthor");
  const std::string sh = RequireProgram("sh", "dash");
  EXPECT_EQ(sh.substr(sh.size() - 3), "/sh");
}

}  // namespace
}  // namespace menutool::author
