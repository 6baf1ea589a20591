// Golden cases of the profile functions, read from tests/data/profile/*.cases. Each case
// gives the file's bytes before, one or more calls with their expected results, and the
// bytes after. The format is described at the top of tests/data/profile/README.
#ifndef TOLVEX_TESTS_PLATFORM_CASEFILE_H
#define TOLVEX_TESTS_PLATFORM_CASEFILE_H

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace tolvex::test {

struct ProfileCall {
  std::vector<std::optional<std::string>> args;  // the verb, then its arguments (nullopt: NULL)
  std::string expected;                          // the return value, then '|' and buffer bytes
};

struct ProfileCase {
  std::string name;
  std::string source;                 // file:line, for failure messages
  std::optional<std::string> before;  // nullopt: no file
  std::vector<ProfileCall> calls;
  std::optional<std::optional<std::string>> after;  // unset: same as before
};

// Names the case in test output.
inline void PrintTo(const ProfileCase& c, std::ostream* out) { *out << c.name << " (" << c.source << ")"; }

// All cases of every *.cases file in `folder`, sorted by file name.
std::vector<ProfileCase> LoadCases(const std::string& folder);

// `text` with the escapes \r \n \t \0 \\ \| \s (space) \xHH and \uHHHH decoded, and the
// resulting characters encoded as `encoding` says: ansi (each below 0x100, one byte),
// utf8, utf16le or utf16be.
std::string Unescape(const std::string& text, const std::string& encoding);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_CASEFILE_H
