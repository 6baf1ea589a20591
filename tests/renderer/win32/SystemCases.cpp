// The renderer safety tests' system cases on Windows: calls in this process (no fork, no
// per-process file-size limit); the device NUL; names differing in case and separators.
#include <cctype>
#include <filesystem>

#include "renderer/SystemCases.h"

namespace tolvex::test {

const bool kChildProcesses = false;

Isolated RunIsolated(const std::function<std::string()>& call, long) {
  return Isolated{true, call(), 0};
}

std::vector<std::string> NotRegularFiles(const TempDir&) { return {"NUL"}; }

std::string OtherSpelling(const TempDir&, const std::string& target) {
  std::string name = std::filesystem::path(target).is_absolute() ? target : ".\\" + target;
  for (char& c : name) c = c == '/' ? '\\' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return name;
}

}  // namespace tolvex::test
