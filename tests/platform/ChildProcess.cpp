// Child roles of the platform tests and the main that dispatches to them.
#include "platform/ChildProcess.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include "platform/FaultInjection.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

extern char** environ;

namespace tolvex::test {
namespace {

// writer <file> <prefix> <count>: writes keys <prefix>0.. of section "s"; fails on a FALSE.
int Writer(char** args) {
  const int count = std::atoi(args[2]);
  for (int i = 0; i < count; ++i) {
    std::string key = std::string(args[1]) + std::to_string(i);
    if (!WritePrivateProfileStringA("s", key.c_str(), key.c_str(), args[0])) return 1;
  }
  return 0;
}

// flipper <file> <bytes>: rewrites key "big" with alternating long values until killed.
int Flipper(char** args) {
  const size_t bytes = std::strtoul(args[1], nullptr, 10);
  for (unsigned round = 0;; ++round) {
    std::string value(bytes, static_cast<char>('a' + round % 2));
    if (!WritePrivateProfileStringA("s", "big", value.c_str(), args[0])) return 1;
  }
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

// dies-at <file> <primitive> <nth>: changes the file and is SIGKILLed just before the nth
// call of <primitive> (0 Open .. 5 Lock) during that write.
int DiesAt(char** args) {
  auto primitive = static_cast<platform::Primitive>(std::atoi(args[1]));
  platform::RunBeforeNthCall(primitive, std::atoi(args[2]), [] { raise(SIGKILL); });
  return WritePrivateProfileStringA("s", "k", "new", args[0]) ? 0 : 1;
}

// read <file> <section> <key>: prints the value read (the default is "<none>").
int Reader(char** args) {
  char buffer[256];
  GetPrivateProfileStringA(args[1], args[2], "<none>", buffer, sizeof buffer, args[0]);
  std::printf("%s", buffer);
  return 0;
}

// signal-then-write <file> <flag> <key>: creates <flag>, then writes <key>=child in "s".
int SignalThenWrite(char** args) {
  if (FILE* flag = std::fopen(args[1], "w")) std::fclose(flag);
  return WritePrivateProfileStringA("s", args[2], "child", args[0]) ? 0 : 1;
}

// edit-dies-at <file> <primitive> <nth>: stages keys k0..k99 in an edit and is SIGKILLed just
// before the nth call of <primitive> during its commit.
int EditDiesAt(char** args) {
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(args[0]);
  if (!edit) return 3;
  for (int i = 0; i < 100; ++i) {
    std::string key = "k" + std::to_string(i);
    if (!WritePrivateProfileStringA("s", key.c_str(), "new", args[0])) {
      TolvexEndProfileEdit(edit);
      return 1;
    }
  }
  auto primitive = static_cast<platform::Primitive>(std::atoi(args[1]));
  platform::RunBeforeNthCall(primitive, std::atoi(args[2]), [] { raise(SIGKILL); });
  const bool committed = TolvexCommitProfileEdit(edit);
  TolvexEndProfileEdit(edit);
  return committed ? 0 : 1;
}

// poke <file> <offset> <text> <mtime-ns>: overwrites bytes of <file> in place at <offset>,
// then sets its modification time to <mtime-ns> (when not "-").
int Poke(char** args) {
  int fd = open(args[0], O_WRONLY);
  const size_t length = std::strlen(args[2]);
  if (fd < 0 || pwrite(fd, args[2], length, std::atol(args[1])) != static_cast<ssize_t>(length))
    return 1;
  if (std::strcmp(args[3], "-") != 0) {
    const long long ns = std::atoll(args[3]);
    struct timespec times[2] = {{0, UTIME_OMIT}, {ns / 1000000000, ns % 1000000000}};
    if (futimens(fd, times) != 0) return 2;
  }
  return close(fd) == 0 ? 0 : 3;
}

int RunChild(const std::string& role, char** args) {
  if (role == "poke") return Poke(args);
  if (role == "read") return Reader(args);
  if (role == "signal-then-write") return SignalThenWrite(args);
  if (role == "edit-dies-at") return EditDiesAt(args);
  if (role == "writer") return Writer(args);
  if (role == "flipper") return Flipper(args);
  if (role == "filesize") return FileSize(args);
  if (role == "dies-at") return DiesAt(args);
  return 64;
}

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

}  // namespace

pid_t SpawnChild(const std::string& role, const std::vector<std::string>& args) {
  pid_t pid = -1;
  int error = Spawn(role, args, nullptr, &pid);
  EXPECT_EQ(error, 0) << "cannot start a child: " << std::strerror(error);
  return pid;
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
  WaitChild(pid);
  return out;
}

int WaitChild(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace tolvex::test

int main(int argc, char** argv) {
  if (argc >= 3 && std::strcmp(argv[1], "--tolvex-child") == 0)
    return tolvex::test::RunChild(argv[2], argv + 3);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
