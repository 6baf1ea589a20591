// The tool as a child process on Windows: CreateProcessW with its standard output and error
// on files, in the folder asked for; a time limit ends it with TerminateProcess.
#include "tools/ToolProcess.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "support/win32/CommandLine.h"

namespace tolvex::test {
namespace {

// A new file at `path` that a child inherits as a standard handle.
HANDLE OutputFile(const std::string& path) {
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  return CreateFileW(Wide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     &inherit, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

int RunToolProcess(const std::vector<std::string>& args, const std::string& cwd,
                   const std::string& out, const std::string& err, unsigned timeLimit) {
  const std::wstring tool = Wide(MENUTEMPLATE_TOOL);
  std::wstring line = Quoted(tool);
  for (const std::string& arg : args) line += L" " + Quoted(Wide(arg));
  HANDLE o = OutputFile(out), e = OutputFile(err);
  if (o == INVALID_HANDLE_VALUE || e == INVALID_HANDLE_VALUE) {
    ADD_FAILURE() << "cannot make the files for the tool's output";
    if (o != INVALID_HANDLE_VALUE) CloseHandle(o);
    if (e != INVALID_HANDLE_VALUE) CloseHandle(e);
    return -1;
  }
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = o;
  startup.hStdError = e;
  PROCESS_INFORMATION process{};
  const std::wstring folder = Wide(cwd);
  // Wine now and then fails a start with ERROR_INTERNAL_ERROR while other programs are
  // starting in the same server (as under ctest -j2); such a start is tried again.
  bool started = false;
  DWORD startError = 0;
  for (int attempt = 0; attempt < 5 && !started; ++attempt) {
    if (attempt) Sleep(200);
    started = CreateProcessW(tool.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                             cwd.empty() ? nullptr : folder.c_str(), &startup, &process);
    startError = started ? 0 : GetLastError();
    if (startError != ERROR_INTERNAL_ERROR) break;
  }
  CloseHandle(o);
  CloseHandle(e);
  if (!started) {
    ADD_FAILURE() << "cannot run " << MENUTEMPLATE_TOOL << ": error " << startError;
    return -1;
  }
  CloseHandle(process.hThread);
  int status = -1;
  DWORD code = 0;
  if (WaitForSingleObject(process.hProcess, timeLimit ? timeLimit * 1000 : INFINITE) ==
      WAIT_OBJECT_0) {
    if (GetExitCodeProcess(process.hProcess, &code)) status = static_cast<int>(code);
  } else {
    TerminateProcess(process.hProcess, 137);
    WaitForSingleObject(process.hProcess, INFINITE);
  }
  CloseHandle(process.hProcess);
  return status;
}

}  // namespace tolvex::test
