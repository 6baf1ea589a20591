// Child processes of the platform tests on Windows: CreateProcessW of this test binary,
// WaitForSingleObject, and TerminateProcess with kKilledCode for a kill at any moment.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/ChildProcess.h"
#include "support/win32/CommandLine.h"

namespace tolvex::test {
namespace {

// Starts this test binary again as the child `role`, its standard output on `output` when
// given; the process handle, or nullptr.
HANDLE Spawn(const std::string& role, const std::vector<std::string>& args, HANDLE output) {
  wchar_t self[MAX_PATH * 4];
  GetModuleFileNameW(nullptr, self, sizeof self / sizeof self[0]);
  std::wstring line = Quoted(self) + L" --tolvex-child " + Quoted(Wide(role));
  for (const std::string& arg : args) line += L" " + Quoted(Wide(arg));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  if (output) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  }
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(self, line.data(), nullptr, nullptr, output ? TRUE : FALSE, 0, nullptr,
                      nullptr, &startup, &process))
    return nullptr;
  CloseHandle(process.hThread);
  return process.hProcess;
}

}  // namespace

Child SpawnChild(const std::string& role, const std::vector<std::string>& args) {
  HANDLE process = Spawn(role, args, nullptr);
  EXPECT_NE(process, nullptr) << "cannot start a child: error " << GetLastError();
  return Child{reinterpret_cast<intptr_t>(process)};
}

std::string ChildOutput(const std::string& role, const std::vector<std::string>& args) {
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &inherit, 0)) return "<no pipe>";
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  HANDLE process = Spawn(role, args, writeEnd);
  CloseHandle(writeEnd);
  std::string out;
  char buffer[256];
  DWORD got = 0;
  while (ReadFile(readEnd, buffer, sizeof buffer, &got, nullptr) && got > 0) out.append(buffer, got);
  CloseHandle(readEnd);
  if (!process) return "<no child>";
  WaitChild(Child{reinterpret_cast<intptr_t>(process)});
  return out;
}

ChildEnd WaitChild(Child child) {
  HANDLE process = reinterpret_cast<HANDLE>(child.id);
  ChildEnd end;
  DWORD code = 0;
  if (process && WaitForSingleObject(process, INFINITE) == WAIT_OBJECT_0 &&
      GetExitCodeProcess(process, &code)) {
    end.killed = code == static_cast<DWORD>(kKilledCode);
    end.exited = !end.killed;
    end.code = static_cast<int>(code);
  }
  if (process) CloseHandle(process);
  return end;
}

void KillChild(Child child) {
  TerminateProcess(reinterpret_cast<HANDLE>(child.id), static_cast<UINT>(kKilledCode));
}

void DieAbruptly() {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(kKilledCode));
  std::abort();  // not reached
}

int RunSystemChild(const std::string& /*role*/, char** /*args*/) { return 64; }

}  // namespace tolvex::test
