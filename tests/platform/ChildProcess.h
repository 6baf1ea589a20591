// The platform tests' own main: run with "--tolvex-child <role> ..." the test binary acts as
// one child writer for the multi-process tests instead of running the tests. A child is this
// binary started again through std::system, which every system has.
#ifndef TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
#define TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H

#include <string>
#include <vector>

namespace tolvex::test {

// Runs this test binary as a child in `role` with `args` to its end and returns its exit code.
// Safe to call from several threads at once.
int RunChild(const std::string& role, const std::vector<std::string>& args);

// The exit code of a child that died abruptly.
inline constexpr int kDiedCode = 86;

// Ends this process at once with kDiedCode, as a kill from outside would: nothing is flushed,
// no destructor or exit handler runs, and the files it had open are left as they are.
[[noreturn]] void DieAbruptly();

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_CHILDPROCESS_H
