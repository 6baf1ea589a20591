// Running the tool in a child process with its output sent to temporary files.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>

namespace tolvex::test {

ToolResult RunTool(const std::vector<std::string>& args, const std::string& cwd,
                   unsigned long fileSizeLimit, unsigned timeLimit) {
  TempDir capture;
  const std::string out = capture.File("out"), err = capture.File("err");
  std::vector<char*> argv{const_cast<char*>(MENUTEMPLATE_TOOL)};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  pid_t child = fork();
  if (child == 0) {
    int o = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    int e = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (o < 0 || e < 0 || dup2(o, 1) < 0 || dup2(e, 2) < 0) _exit(126);
    if (!cwd.empty() && chdir(cwd.c_str()) != 0) _exit(126);
    if (fileSizeLimit) {
      signal(SIGXFSZ, SIG_IGN);  // stays ignored across exec: writes fail instead
      struct rlimit limit {fileSizeLimit, fileSizeLimit};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(126);
    }
    if (timeLimit) alarm(timeLimit);  // the alarm survives exec, and SIGALRM ends the tool
    execv(argv[0], argv.data());
    _exit(127);
  }
  ToolResult result;
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    ADD_FAILURE() << "cannot run " << MENUTEMPLATE_TOOL;
    return result;
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.out = ReadFile(out);
  result.err = ReadFile(err);
  return result;
}

nlohmann::json ShowJson(const std::string& file) {
  ToolResult shown = RunTool({"show", file, "--json"});
  EXPECT_EQ(shown.status, 0) << shown.err;
  return nlohmann::json::parse(shown.out, nullptr, /*allow_exceptions=*/false);
}

}  // namespace tolvex::test
