// Running the tool in a child process with its output sent to temporary files.
#include "ToolRunner.h"

#include "ToolProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tolvex::test {

ToolResult RunTool(const std::vector<std::string>& args, const std::string& cwd,
                   unsigned timeLimit) {
  TempDir capture;
  const std::string out = capture.File("out"), err = capture.File("err");
  ToolResult result;
  result.status = RunToolProcess(args, cwd, out, err, timeLimit);
  result.out = ReadFile(out);
  result.err = ReadFile(err);
  return result;
}

bool Shell(const std::string& folder, const std::string& command) {
  return std::system(("cd '" + folder + "' && " + command + " >/dev/null 2>&1").c_str()) == 0;
}

std::string PngHeader(unsigned width, unsigned height) {
  std::string h("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
  for (unsigned v : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) h += static_cast<char>(v >> shift);
  }
  return h;
}

nlohmann::json ShowJson(const std::string& file) {
  ToolResult shown = RunTool({"show", file, "--json"});
  EXPECT_EQ(shown.status, 0) << shown.err;
  return nlohmann::json::parse(shown.out, nullptr, /*allow_exceptions=*/false);
}

}  // namespace tolvex::test
