// One key of a profile file read as a program would read it, for the tests of the profile
// functions.
#ifndef TOLVEX_TESTS_PLATFORM_PROFILEKEY_H
#define TOLVEX_TESTS_PLATFORM_PROFILEKEY_H

#include <tolvex/Profile.h>

#include <string>

namespace tolvex::test {

// The value of `key` in section "s" of `file`, or "<none>" when there is none.
inline std::string ReadKey(const std::string& file, const char* key) {
  char buffer[256];
  GetPrivateProfileStringA("s", key, "<none>", buffer, sizeof buffer, file.c_str());
  return buffer;
}

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_PROFILEKEY_H
