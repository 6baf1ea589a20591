// The renderer safety tests' system cases on POSIX: calls in a forked child under an alarm and
// RLIMIT_FSIZE, its peak memory from wait4; FIFOs, /dev/zero and symbolic links.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "renderer/SystemCases.h"

namespace tolvex::test {

const bool kArrowsAntiAliased = true;
const bool kChildProcesses = true;

Isolated RunIsolated(const std::function<std::string()>& call, long fileSizeLimit) {
  int fds[2];
  EXPECT_EQ(pipe(fds), 0);
  const pid_t pid = fork();
  if (pid == 0) {
    alarm(60);  // a FIFO must not block: a hang ends with SIGALRM
    const struct rlimit limit = {rlim_t(fileSizeLimit), rlim_t(fileSizeLimit)};
    if (fileSizeLimit) setrlimit(RLIMIT_FSIZE, &limit);
    const std::string output = call();
    _exit(write(fds[1], output.data(), output.size()) < 0 ? 3 : 0);
  }
  close(fds[1]);
  Isolated o;
  char buffer[512];
  for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;) o.output.append(buffer, n);
  close(fds[0]);
  int status = 0;
  struct rusage usage {};
  wait4(pid, &status, 0, &usage);
  o.finished = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  o.peakKb = usage.ru_maxrss;
  return o;
}

const bool kNotRegularOutputNamed = true;

std::vector<std::string> NotRegularFiles(const TempDir& dir) {
  EXPECT_EQ(mkfifo(dir.File("fifo").c_str(), 0644), 0);
  std::filesystem::create_symlink("fifo", dir.File("to-fifo"));
  return {dir.File("fifo"), dir.File("to-fifo"), "/dev/zero"};
}

std::string OtherSpelling(const TempDir& dir, const std::string& target) {
  static int count = 0;
  const std::string name = "alias" + std::to_string(++count);
  std::filesystem::create_symlink(target, dir.File(name));
  return name;
}

}  // namespace tolvex::test
