// Child roles of the platform tests and the main that dispatches to them.
#include "platform/ChildProcess.h"

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/FaultInjection.h"

namespace tolvex::test {
namespace {

// This binary, made absolute before any test changes the current folder. Build folders have
// no blanks, so the path goes unquoted: Windows' command interpreter drops the outer quotes
// of a line that starts with one.
std::string g_self;

// writer <file> <prefix> <count>: writes keys <prefix>0.. of section "s"; fails on a FALSE.
int Writer(char** args) {
  const int count = std::atoi(args[2]);
  for (int i = 0; i < count; ++i) {
    std::string key = std::string(args[1]) + std::to_string(i);
    if (!WritePrivateProfileStringA("s", key.c_str(), key.c_str(), args[0])) return 1;
  }
  return 0;
}

// dies-at <file> <primitive> <nth>: writes k=new in section "s" and dies abruptly just before
// the nth call of <primitive> (0 Open .. 5 Lock) during that write.
int DiesAt(char** args) {
  auto primitive = static_cast<platform::Primitive>(std::atoi(args[1]));
  platform::RunBeforeNthCall(primitive, std::atoi(args[2]), [] { DieAbruptly(); });
  return WritePrivateProfileStringA("s", "k", "new", args[0]) ? 0 : 1;
}

int RunRole(const std::string& role, char** args) {
  if (role == "writer") return Writer(args);
  if (role == "dies-at") return DiesAt(args);
  return 64;
}

}  // namespace

int RunChild(const std::string& role, const std::vector<std::string>& args) {
  std::string line = g_self + " --tolvex-child " + role;
  for (const std::string& arg : args) line += " \"" + arg + "\"";
  // POSIX returns the wait status, the exit code in its second byte; Windows the exit code.
  const int status = std::system(line.c_str());
  return status > 0xFF ? status >> 8 : status;
}

void DieAbruptly() { std::_Exit(kDiedCode); }

}  // namespace tolvex::test

int main(int argc, char** argv) {
  if (argc >= 3 && std::strcmp(argv[1], "--tolvex-child") == 0)
    return tolvex::test::RunRole(argv[2], argv + 3);
  tolvex::test::g_self = std::filesystem::absolute(argv[0]).string();
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
