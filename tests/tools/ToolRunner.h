// Runs the built menutemplate binary for the end-to-end tests and captures what it says.
#ifndef TOLVEX_TESTS_TOOLS_TOOLRUNNER_H
#define TOLVEX_TESTS_TOOLS_TOOLRUNNER_H

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace tolvex::test {

struct ToolResult {
  int status = -1;  // exit status, or -1 when the tool did not exit normally
  std::string out;
  std::string err;
};

// Runs menutemplate with `args` in the folder `cwd` (the test's own when empty). With a
// `timeLimit`, a tool still running after that many seconds is killed (status -1).
ToolResult RunTool(const std::vector<std::string>& args, const std::string& cwd = "",
                   unsigned timeLimit = 0);

// `show --json` of `file`, parsed; fails the test when the tool fails.
nlohmann::json ShowJson(const std::string& file);

// Runs `command` through the shell in `folder`, quietly; whether it succeeded.
bool Shell(const std::string& folder, const std::string& command);

// The start of a PNG: its signature and header chunk up to the width and height.
std::string PngHeader(unsigned width, unsigned height);

// A picture shipped in examples/.
inline std::string ExamplePicture(const std::string& name) {
  return std::string(TOLVEX_EXAMPLES_DIR) + "/" + name;
}

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_TOOLS_TOOLRUNNER_H
