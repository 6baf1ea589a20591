// The renderer safety tests' system cases on Windows: calls in this process (no fork, no
// per-process file-size limit); the device NUL, which every folder holds; names differing in
// case and separators.
#include <cctype>
#include <filesystem>

#include "renderer/SystemCases.h"

namespace tolvex::test {

const bool kArrowsAntiAliased = false;
const bool kChildProcesses = false;

Isolated RunIsolated(const std::function<std::string()>& call, long) {
  return Isolated{true, call(), 0};
}

const bool kNotRegularOutputNamed = false;

std::vector<std::string> NotRegularFiles(const TempDir& dir) { return {dir.File("NUL")}; }

std::string OtherSpelling(const TempDir&, const std::string& target) {
  std::string name = std::filesystem::path(target).is_absolute() ? target : ".\\" + target;
  for (char& c : name) c = c == '/' ? '\\' : static_cast<char>(std::toupper(c & 0xff));
  return name;
}

}  // namespace tolvex::test
