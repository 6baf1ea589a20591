// The platform tests' own main: run with "--tolvex-child <role> ..." the test binary acts as
// one child writer for the multi-process tests instead of running the tests.
#ifndef TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
#define TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace tolvex::test {

// Starts this test binary as a child in `role` with `args`; returns its pid.
pid_t SpawnChild(const std::string& role, const std::vector<std::string>& args);
// Waits for `pid` and returns its wait status.
int WaitChild(pid_t pid);
// Runs the child in `role` to its end and returns what it printed.
std::string ChildOutput(const std::string& role, const std::vector<std::string>& args);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
