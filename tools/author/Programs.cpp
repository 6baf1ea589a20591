// Running outside programs (see Programs.h) with fork and execve. Standard output and error
// are read through pipes with poll, so neither can fill up and stall the program.
#include "tools/author/Programs.h"

#include "tools/ToolError.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>

extern char** environ;

namespace menutool::author {
namespace {

constexpr size_t kKeptErrors = 64 * 1024;

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
  for (char** e = environ; *e; ++e) env.push_back(*e);
  for (const std::string& e : run.environment) env.push_back(const_cast<char*>(e.c_str()));
  env.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) throw ToolError(run.argv[0], std::string("cannot start: ") + std::strerror(errno));
  if (child == 0) {
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

  Outcome outcome;
  std::string line;
  std::vector<pollfd> fds;
  if (out[0] >= 0) fds.push_back({out[0], POLLIN, 0});
  if (err[0] >= 0) fds.push_back({err[0], POLLIN, 0});
  char buffer[4096];
  while (!fds.empty()) {
    if (poll(fds.data(), fds.size(), -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    for (size_t i = 0; i < fds.size();) {
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

std::string LastLine(const std::string& text) {
  const size_t end = text.find_last_not_of("\r\n \t");
  if (end == std::string::npos) return "";
  const size_t before = text.find_last_of("\r\n", end);
  const size_t start = before == std::string::npos ? 0 : before + 1;
  return text.substr(start, end - start + 1);
}

}  // namespace menutool::author
