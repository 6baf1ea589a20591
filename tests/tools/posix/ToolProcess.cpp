// The tool as a child process on POSIX: fork and exec, with alarm() for a time limit.
#include "tools/ToolProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tolvex::test {

int RunToolProcess(const std::vector<std::string>& args, const std::string& cwd,
                   const std::string& out, const std::string& err, unsigned timeLimit) {
  std::vector<char*> argv{const_cast<char*>(MENUTEMPLATE_TOOL)};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  pid_t child = fork();
  if (child == 0) {
    int o = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    int e = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (o < 0 || e < 0 || dup2(o, 1) < 0 || dup2(e, 2) < 0) _exit(126);
    if (!cwd.empty() && chdir(cwd.c_str()) != 0) _exit(126);
    if (timeLimit) alarm(timeLimit);  // the alarm survives exec, and SIGALRM ends the tool
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    ADD_FAILURE() << "cannot run " << MENUTEMPLATE_TOOL;
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace tolvex::test
