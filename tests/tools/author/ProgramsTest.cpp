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

TEST(Programs, RunsWithFilesAndLinesAndReportsHowItEnded) {
  tolvex::test::TempDir dir;
  Invocation run({"/bin/sh", "-c", "cat; echo second; echo oops >&2; echo why >&2; exit 3"});
  run.input = dir.File("in");
  run.folder = dir.path();
  std::vector<std::string> lines;
  run.onLine = [&](const std::string& line) { lines.push_back(line); };
  tolvex::test::WriteFile(dir.File("in"), "first\nlast without newline");
  Outcome outcome = RunProgram(run);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(lines, (std::vector<std::string>{"first", "last without newlinesecond"}));
  EXPECT_EQ(LastLine(outcome.errors), "why");
}

}  // namespace
}  // namespace menutool::author
