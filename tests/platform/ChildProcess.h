// The platform tests' own main: run with "--tolvex-child <role> ..." the test binary acts as
// one child writer for the multi-process tests instead of running the tests. Starting,
// killing and waiting for a child is per system (posix/, win32/); the roles are shared.
#ifndef TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
#define TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H

#include <cstdint>
#include <string>
#include <vector>

namespace tolvex::test {

// A started child: its pid, or its process handle on Windows.
struct Child {
  intptr_t id = -1;
};

// How a child ended: it exited with `code`, or it was killed (SIGKILL, or TerminateProcess
// with kKilledCode).
struct ChildEnd {
  bool exited = false;
  int code = -1;
  bool killed = false;
  bool Succeeded() const { return exited && code == 0; }
};

// The exit code a child killed by TerminateProcess reports on Windows.
inline constexpr int kKilledCode = 137;

// Starts this test binary as a child in `role` with `args`.
Child SpawnChild(const std::string& role, const std::vector<std::string>& args);
// Waits for `child` to end.
ChildEnd WaitChild(Child child);
// Kills `child` at once, wherever it is (SIGKILL, TerminateProcess).
void KillChild(Child child);
// Runs the child in `role` to its end and returns what it printed.
std::string ChildOutput(const std::string& role, const std::vector<std::string>& args);

// Ends this process at once, as a kill from outside would: nothing is flushed or cleaned up.
[[noreturn]] void DieAbruptly();
// The roles only one system has (an rlimit, say); 64 for a role it does not know.
int RunSystemChild(const std::string& role, char** args);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
