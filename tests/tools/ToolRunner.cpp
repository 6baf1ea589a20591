// Running the tool in a child process with its output sent to temporary files.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace tolvex::test {

namespace {

ToolResult Run(const std::vector<std::string>& args, const std::string& cwd,
               unsigned long fileSizeLimit, unsigned timeLimit, const std::string& waitFor,
               int stopSignal) {
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
    return result;
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.out = ReadFile(out);
  result.err = ReadFile(err);
  return result;
}

}  // namespace

ToolResult RunTool(const std::vector<std::string>& args, const std::string& cwd,
                   unsigned long fileSizeLimit, unsigned timeLimit) {
  return Run(args, cwd, fileSizeLimit, timeLimit, "", 0);
}

ToolResult RunToolAndSignal(const std::vector<std::string>& args, const std::string& cwd,
                            const std::string& waitFor, int signal) {
  return Run(args, cwd, 0, 0, waitFor, signal);
}

bool Shell(const std::string& folder, const std::string& command) {
  return std::system(("cd '" + folder + "' && " + command + " >/dev/null 2>&1").c_str()) == 0;
}

std::string PngHeader(unsigned width, unsigned height) {
  std::string h("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
  for (unsigned v : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) h += static_cast<char>(v >> shift);
  }
  return h;
}

nlohmann::json ShowJson(const std::string& file) {
  ToolResult shown = RunTool({"show", file, "--json"});
  EXPECT_EQ(shown.status, 0) << shown.err;
  return nlohmann::json::parse(shown.out, nullptr, /*allow_exceptions=*/false);
}

}  // namespace tolvex::test
