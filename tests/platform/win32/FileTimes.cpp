// File times on Windows, in the 100 ns units of FILETIME, through GetFileTime and SetFileTime
// (the C runtime's utime keeps whole seconds only).
#include "platform/FileTimes.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>

namespace tolvex::test {
namespace {

HANDLE Open(const std::string& path, DWORD access) {
  return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

std::string ModifiedTime(const std::string& path) {
  HANDLE file = Open(path, FILE_READ_ATTRIBUTES);
  if (file == INVALID_HANDLE_VALUE) return "";
  FILETIME written;
  const bool ok = GetFileTime(file, nullptr, nullptr, &written);
  CloseHandle(file);
  if (!ok) return "";
  return std::to_string((static_cast<unsigned long long>(written.dwHighDateTime) << 32) |
                        written.dwLowDateTime);
}

bool SetModifiedTime(const std::string& path, const std::string& time) {
  const unsigned long long units = std::strtoull(time.c_str(), nullptr, 10);
  FILETIME written{static_cast<DWORD>(units & 0xffffffffu), static_cast<DWORD>(units >> 32)};
  HANDLE file = Open(path, FILE_WRITE_ATTRIBUTES);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool ok = SetFileTime(file, nullptr, nullptr, &written);
  CloseHandle(file);
  return ok;
}

int64_t LastChangeNs(const std::string& path) {
  HANDLE file = Open(path, FILE_READ_ATTRIBUTES);
  if (file == INVALID_HANDLE_VALUE) return 0;
  FILE_BASIC_INFO times;
  const bool ok = GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times);
  CloseHandle(file);
  if (!ok) return 0;
  return std::max(times.LastWriteTime.QuadPart, times.ChangeTime.QuadPart) * 100;
}

bool CopyFileTimes(const std::string& from, const std::string& to) {
  HANDLE source = Open(from, FILE_READ_ATTRIBUTES);
  if (source == INVALID_HANDLE_VALUE) return false;
  FILETIME created, accessed, written;
  const bool got = GetFileTime(source, &created, &accessed, &written);
  CloseHandle(source);
  if (!got) return false;
  HANDLE target = Open(to, FILE_WRITE_ATTRIBUTES);
  if (target == INVALID_HANDLE_VALUE) return false;
  const bool ok = SetFileTime(target, &created, &accessed, &written);
  CloseHandle(target);
  return ok;
}

}  // namespace tolvex::test
