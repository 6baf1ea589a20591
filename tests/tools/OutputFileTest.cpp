// The tool's own output files: replaced whole or not at all, through links, never over what is
// not a regular file, and never cut short by a file size limit.
#include "tools/io/OutputFile.h"
#include "tools/cli/ToolError.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

bool Refused(const std::string& path, const std::string& bytes) {
  try {
    menutool::WriteOutputFile(path, bytes);
  } catch (const menutool::ToolError&) {
    return true;
  }
  return false;
}

TEST(OutputFile, ReplacesKeepingTheModeAndFollowsLinks) {
  TempDir dir;
  const std::string file = dir.File("preview.png");
  WriteFile(file, "old");
  chmod(file.c_str(), 0640);
  menutool::WriteOutputFile(file, "new bytes");
  EXPECT_EQ(ReadFile(file), "new bytes");
  EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));

  fs::create_symlink("preview.png", dir.File("link.png"));
  fs::create_symlink("later.png", dir.File("dangling.png"));
  menutool::WriteOutputFile(dir.File("link.png"), "through the link");
  menutool::WriteOutputFile(dir.File("dangling.png"), "made");
  EXPECT_TRUE(fs::is_symlink(dir.File("link.png")));
  EXPECT_TRUE(fs::is_symlink(dir.File("dangling.png")));
  EXPECT_EQ(ReadFile(file), "through the link");
  EXPECT_EQ(ReadFile(dir.File("later.png")), "made");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 4);
}

TEST(OutputFile, RefusesWhatItMustNotReplace) {
  TempDir dir;
  const std::string fifo = dir.File("fifo.png"), readOnly = dir.File("kept.png");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0644), 0);
  WriteFile(readOnly, "kept");
  chmod(readOnly.c_str(), 0444);
  EXPECT_TRUE(Refused(fifo, "x"));
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_TRUE(Refused(readOnly, "x"));  // for root too
  EXPECT_TRUE(Refused(dir.path(), "x"));
  EXPECT_TRUE(Refused(dir.File("no/such/folder.png"), "x"));
  EXPECT_EQ(ReadFile(readOnly), "kept");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 2);
}

// A write past RLIMIT_FSIZE, as on a full disk: the tool lives on, the old file stays whole.
TEST(OutputFile, AFailedWriteLeavesTheOldFileAndNoTemporary) {
  TempDir dir;
  const std::string file = dir.File("preview.png");
  WriteFile(file, "old picture");
  pid_t child = fork();
  if (child == 0) {
    struct rlimit limit {4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(Refused(file, std::string(100000, 'p')) ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_EQ(ReadFile(file), "old picture");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 1);
}

}  // namespace
}  // namespace tolvex::test
