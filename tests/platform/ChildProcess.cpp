// Child roles of the platform tests and the main that dispatches to them.
#include "platform/ChildProcess.h"

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "platform/FaultInjection.h"
#include "platform/FileTimes.h"

namespace tolvex::test {
namespace {

// writer <file> <prefix> <count>: writes keys <prefix>0.. of section "s"; fails on a FALSE.
int Writer(char** args) {
  const int count = std::atoi(args[2]);
  for (int i = 0; i < count; ++i) {
    std::string key = std::string(args[1]) + std::to_string(i);
    if (!WritePrivateProfileStringA("s", key.c_str(), key.c_str(), args[0])) return 1;
  }
  return 0;
}

// flipper <file> <bytes>: rewrites key "big" with alternating long values until killed.
int Flipper(char** args) {
  const size_t bytes = std::strtoul(args[1], nullptr, 10);
  for (unsigned round = 0;; ++round) {
    std::string value(bytes, static_cast<char>('a' + round % 2));
    if (!WritePrivateProfileStringA("s", "big", value.c_str(), args[0])) return 1;
  }
}

// dies-at <file> <primitive> <nth>: changes the file and dies abruptly just before the nth
// call of <primitive> (0 Open .. 5 Lock) during that write.
int DiesAt(char** args) {
  auto primitive = static_cast<platform::Primitive>(std::atoi(args[1]));
  platform::RunBeforeNthCall(primitive, std::atoi(args[2]), [] { DieAbruptly(); });
  return WritePrivateProfileStringA("s", "k", "new", args[0]) ? 0 : 1;
}

// read <file> <section> <key>: prints the value read (the default is "<none>").
int Reader(char** args) {
  char buffer[256];
  GetPrivateProfileStringA(args[1], args[2], "<none>", buffer, sizeof buffer, args[0]);
  std::printf("%s", buffer);
  return 0;
}

// signal-then-write <file> <flag> <key>: creates <flag>, then writes <key>=child in "s".
int SignalThenWrite(char** args) {
  if (FILE* flag = std::fopen(args[1], "w")) std::fclose(flag);
  return WritePrivateProfileStringA("s", args[2], "child", args[0]) ? 0 : 1;
}

// edit-dies-at <file> <primitive> <nth>: stages keys k0..k99 in an edit and dies abruptly
// just before the nth call of <primitive> during its commit.
int EditDiesAt(char** args) {
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(args[0]);
  if (!edit) return 3;
  for (int i = 0; i < 100; ++i) {
    std::string key = "k" + std::to_string(i);
    if (!WritePrivateProfileStringA("s", key.c_str(), "new", args[0])) {
      TolvexEndProfileEdit(edit);
      return 1;
    }
  }
  auto primitive = static_cast<platform::Primitive>(std::atoi(args[1]));
  platform::RunBeforeNthCall(primitive, std::atoi(args[2]), [] { DieAbruptly(); });
  const bool committed = TolvexCommitProfileEdit(edit);
  TolvexEndProfileEdit(edit);
  return committed ? 0 : 1;
}

// poke <file> <offset> <text> <time>: overwrites bytes of <file> in place at <offset>, then
// sets its modification time to <time> (from ModifiedTime; "-" leaves it).
int Poke(char** args) {
  {
    std::fstream file(args[0], std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(std::atol(args[1]));
    file.write(args[2], static_cast<std::streamsize>(std::strlen(args[2])));
    file.close();
    if (!file) return 1;
  }
  if (std::strcmp(args[3], "-") != 0 && !SetModifiedTime(args[0], args[3])) return 2;
  return 0;
}

int RunChild(const std::string& role, char** args) {
  if (role == "poke") return Poke(args);
  if (role == "read") return Reader(args);
  if (role == "signal-then-write") return SignalThenWrite(args);
  if (role == "edit-dies-at") return EditDiesAt(args);
  if (role == "writer") return Writer(args);
  if (role == "flipper") return Flipper(args);
  if (role == "dies-at") return DiesAt(args);
  return RunSystemChild(role, args);
}

}  // namespace
}  // namespace tolvex::test

int main(int argc, char** argv) {
  if (argc >= 3 && std::strcmp(argv[1], "--tolvex-child") == 0)
    return tolvex::test::RunChild(argv[2], argv + 3);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
