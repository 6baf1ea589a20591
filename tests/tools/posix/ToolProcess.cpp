// The tool as a child process on POSIX: fork and exec, with an rlimit for a file-size limit,
// alarm() for a time limit, and kill() for a signal once the tool has said something.
#include "tools/ToolProcess.h"

#include "support/TempDir.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>

namespace tolvex::test {

int RunToolProcess(const std::vector<std::string>& args, const std::string& cwd,
                   const std::string& out, const std::string& err, unsigned long fileSizeLimit,
                   unsigned timeLimit, const std::string& waitFor, int stopSignal) {
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
  int status = 0;
  if (child > 0 && stopSignal) {
    // Once the tool says `waitFor`, the signal goes to the tool alone. A tool that has not
    // ended a minute later is killed, so that the test fails instead of hanging.
    bool sent = false;
    for (int tick = 0; tick < 1200; ++tick) {
      if (waitpid(child, &status, WNOHANG) == child) break;
      if (!sent && ReadFile(out).find(waitFor) != std::string::npos) {
        kill(child, stopSignal);
        sent = true;
      }
      usleep(50 * 1000);
    }
    if (waitpid(child, &status, WNOHANG) == 0) {
      ADD_FAILURE() << "the tool did not end" << (sent ? " after the signal" : "");
      kill(child, SIGKILL);
    } else {
      child = 0;
    }
    EXPECT_TRUE(sent) << "the tool never said: " << waitFor;
  }
  if (child < 0 || (child > 0 && waitpid(child, &status, 0) != child)) {
    ADD_FAILURE() << "cannot run " << MENUTEMPLATE_TOOL;
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace tolvex::test
