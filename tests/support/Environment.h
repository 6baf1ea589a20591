// Setting the tests' environment variables, as each system spells it, and for one scope.
#ifndef TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H
#define TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H

#include <cstdlib>
#include <optional>
#include <string>

namespace tolvex::test {

// Sets `name` to `value` in this process's environment; a null `value` removes it.
void SetEnvironment(const char* name, const char* value);

// Sets or removes a variable until the end of the scope, then gives back what it was.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const char* value) : m_name(name) {
    if (const char* old = std::getenv(name)) m_old = old;
    SetEnvironment(name, value);
  }
  ~ScopedEnvironment() { SetEnvironment(m_name, m_old ? m_old->c_str() : nullptr); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  const char* m_name;
  std::optional<std::string> m_old;
};

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_ENVIRONMENT_H
