// Environment variables on Windows: the C runtime's _putenv_s, which getenv reads; an empty
// value removes the variable.
#include "support/Environment.h"

#include <cstdlib>

namespace tolvex::test {

void SetEnvironment(const char* name, const char* value) { _putenv_s(name, value ? value : ""); }

}  // namespace tolvex::test
