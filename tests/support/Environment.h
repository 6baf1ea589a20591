// Setting the tests' environment variables, as each system spells it.
#ifndef TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H
#define TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H

namespace tolvex::test {

// Sets `name` to `value` in this process's environment; a null `value` removes it.
void SetEnvironment(const char* name, const char* value);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H
