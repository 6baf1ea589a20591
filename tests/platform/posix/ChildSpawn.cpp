// Child processes of the platform tests on POSIX: posix_spawn of /proc/self/exe, waitpid,
// SIGKILL; and the child role only POSIX has (a file-size rlimit).
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/ChildProcess.h"

extern char** environ;

namespace tolvex::test {
namespace {

// Starts this test binary again as the child `role`; returns posix_spawn's error.
int Spawn(const std::string& role, const std::vector<std::string>& args,
          const posix_spawn_file_actions_t* actions, pid_t* pid) {
  std::vector<std::string> all = {"/proc/self/exe", "--tolvex-child", role};
  all.insert(all.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& arg : all) argv.push_back(arg.data());
  argv.push_back(nullptr);
  return posix_spawn(pid, "/proc/self/exe", actions, nullptr, argv.data(), environ);
}

// filesize <file> <limit> <bytes>: writes a value of <bytes> under RLIMIT_FSIZE <limit>;
// exits 0 when the write failed cleanly, 2 when it claimed success.
int FileSize(char** args) {
  struct rlimit limit;
  limit.rlim_cur = limit.rlim_max = std::strtoul(args[1], nullptr, 10);
  if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 3;
  std::string value(std::strtoul(args[2], nullptr, 10), 'x');
  return WritePrivateProfileStringA("s", "big", value.c_str(), args[0]) ? 2 : 0;
}

}  // namespace

Child SpawnChild(const std::string& role, const std::vector<std::string>& args) {
  pid_t pid = -1;
  int error = Spawn(role, args, nullptr, &pid);
  EXPECT_EQ(error, 0) << "cannot start a child: " << std::strerror(error);
  return Child{pid};
}

std::string ChildOutput(const std::string& role, const std::vector<std::string>& args) {
  int fds[2];
  if (pipe(fds) != 0) return "<no pipe>";
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
  posix_spawn_file_actions_addclose(&actions, fds[0]);
  pid_t pid = -1;
  int error = Spawn(role, args, &actions, &pid);
  posix_spawn_file_actions_destroy(&actions);
  close(fds[1]);
  std::string out;
  char buffer[256];
  ssize_t got;
  while ((got = read(fds[0], buffer, sizeof buffer)) > 0) out.append(buffer, static_cast<size_t>(got));
  close(fds[0]);
  if (error != 0) return "<no child>";
  WaitChild(Child{pid});
  return out;
}

ChildEnd WaitChild(Child child) {
  int status = 0;
  while (waitpid(static_cast<pid_t>(child.id), &status, 0) < 0 && errno == EINTR) {
  }
  ChildEnd end;
  end.exited = WIFEXITED(status);
  end.code = end.exited ? WEXITSTATUS(status) : -1;
  end.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  return end;
}

void KillChild(Child child) { kill(static_cast<pid_t>(child.id), SIGKILL); }

void DieAbruptly() {
  raise(SIGKILL);
  std::abort();  // not reached
}

int RunSystemChild(const std::string& role, char** args) {
  if (role == "filesize") return FileSize(args);
  return 64;
}

}  // namespace tolvex::test
