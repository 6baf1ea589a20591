// Running outside programs (see Programs.h) with fork and execve. Standard output and error
// are read through pipes with poll, so neither can fill up and stall the program. Each program
// runs in a process group of its own, so a Ctrl-C at the terminal reaches only the tool, which
// stops it (Stop.h); it also dies with the tool, should the tool be killed outright.
#include "tools/author/Programs.h"

#include "tools/cli/ToolError.h"
#include "tools/author/Stop.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

extern char** environ;

namespace menutool::author {
namespace {

constexpr size_t kKeptErrors = 64 * 1024;

// What the programs see of the tool's environment: where programs and temporary files are,
// and the language of messages. Anything else (VIDEO_FORMAT for dvdauthor, FFREPORT or
// AV_LOG_FORCE_* for ffmpeg...) would change what they make, so each run states its own.
bool Passed(const char* entry) {
  for (const char* name : {"PATH=", "HOME=", "TMPDIR=", "LANG=", "LC_ALL=", "LC_CTYPE=", "TZ="})
    if (std::strncmp(entry, name, std::strlen(name)) == 0) return true;
  return false;
}

// Ends the program's process group: asked politely, then, after two seconds, forced.
void Stop(pid_t child) {
  kill(-child, SIGTERM);
  for (int waited = 0; waited < 40; ++waited) {
    if (waitpid(child, nullptr, WNOHANG) == child) return;
    usleep(50 * 1000);
  }
  kill(-child, SIGKILL);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

int OpenOrDie(const std::string& path, int flags) {
  const int fd = open(path.c_str(), flags | O_CLOEXEC, 0644);
  if (fd < 0) {
    // In the child: report on the inherited standard error and leave with the exec status.
    dprintf(2, "%s: %s\n", path.c_str(), std::strerror(errno));
    _exit(127);
  }
  return fd;
}

}  // namespace

std::string RequireProgram(const std::string& program, const std::string& package) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(path ? path : "/usr/bin:/bin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string candidate = (folder.empty() ? "." : folder) + "/" + program;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  throw ToolError("", program + " not found: install the Debian package " + package);
}

Outcome RunProgram(const Invocation& run) {
  int out[2] = {-1, -1}, err[2] = {-1, -1};
  if (run.output.empty() && pipe2(out, O_CLOEXEC) != 0)
    throw ToolError(run.argv[0], std::string("cannot start: ") + std::strerror(errno));
  if (run.log.empty() && pipe2(err, O_CLOEXEC) != 0)
    throw ToolError(run.argv[0], std::string("cannot start: ") + std::strerror(errno));

  // Everything the child needs is built before fork: after it, only async-signal-safe calls.
  std::vector<char*> argv;
  for (const std::string& a : run.argv) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  std::vector<char*> env;
  for (char** e = environ; *e; ++e)
    if (Passed(*e)) env.push_back(*e);
  for (const std::string& e : run.environment) env.push_back(const_cast<char*>(e.c_str()));
  env.push_back(nullptr);

  StopIfAsked();
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) throw ToolError(run.argv[0], std::string("cannot start: ") + std::strerror(errno));
  if (child == 0) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);  // the tool died before the line above
    if (!run.folder.empty() && chdir(run.folder.c_str()) != 0) _exit(127);
    dup2(OpenOrDie(run.input.empty() ? "/dev/null" : run.input, O_RDONLY), 0);
    dup2(run.output.empty() ? out[1] : OpenOrDie(run.output, O_WRONLY | O_CREAT | O_TRUNC), 1);
    if (!run.log.empty()) dup2(OpenOrDie(run.log, O_WRONLY | O_CREAT | O_APPEND), 2);
    else dup2(err[1], 2);
    execve(argv[0], argv.data(), env.data());
    dprintf(2, "%s: %s\n", argv[0], std::strerror(errno));
    _exit(127);
  }
  if (out[1] >= 0) close(out[1]);
  if (err[1] >= 0) close(err[1]);

  setpgid(child, child);  // also here, so that Stop() finds the group whatever runs first

  Outcome outcome;
  std::string line;
  std::vector<pollfd> fds;
  if (StopPipe() >= 0) fds.push_back({StopPipe(), POLLIN, 0});
  const size_t streams = fds.size();
  if (out[0] >= 0) fds.push_back({out[0], POLLIN, 0});
  if (err[0] >= 0) fds.push_back({err[0], POLLIN, 0});
  char buffer[4096];
  // Without pipes to read, the wait is for the program's end or a stop, checked every 100 ms.
  while (fds.size() > streams || (out[0] < 0 && err[0] < 0)) {
    const int ready = poll(fds.data(), fds.size(), fds.size() > streams ? -1 : 100);
    if (StopSignal() != 0) {
      for (size_t i = streams; i < fds.size(); ++i) close(fds[i].fd);
      Stop(child);
      StopIfAsked();
    }
    if (ready < 0 && errno != EINTR) break;
    if (fds.size() == streams) {
      siginfo_t ended{};
      if (waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
          ended.si_pid == child)
        break;
      continue;
    }
    for (size_t i = streams; i < fds.size();) {
      if (!fds[i].revents) { ++i; continue; }
      const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n <= 0) {
        close(fds[i].fd);
        fds.erase(fds.begin() + static_cast<long>(i));
        continue;
      }
      if (fds[i].fd == out[0]) {
        for (ssize_t k = 0; k < n; ++k) {
          if (buffer[k] != '\n') { line += buffer[k]; continue; }
          if (run.onLine) run.onLine(line);
          line.clear();
        }
      } else {
        outcome.errors.append(buffer, static_cast<size_t>(n));
        if (outcome.errors.size() > 2 * kKeptErrors)
          outcome.errors.erase(0, outcome.errors.size() - kKeptErrors);
      }
      ++i;
    }
  }
  if (!line.empty() && run.onLine) run.onLine(line);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string FileArgument(const std::string& path) {
  return "file:" + std::filesystem::absolute(path).string();
}

std::string LastLine(const std::string& text) {
  const size_t end = text.find_last_not_of("\r\n \t");
  if (end == std::string::npos) return "";
  const size_t before = text.find_last_of("\r\n", end);
  const size_t start = before == std::string::npos ? 0 : before + 1;
  return text.substr(start, end - start + 1);
}

}  // namespace menutool::author
