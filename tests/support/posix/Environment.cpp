// Environment variables on POSIX: setenv and unsetenv.
#include "support/Environment.h"

#include <cstdlib>

namespace tolvex::test {

void SetEnvironment(const char* name, const char* value) {
  value ? setenv(name, value, 1) : unsetenv(name);
}

}  // namespace tolvex::test
