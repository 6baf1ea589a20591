// Windows paths: '\' and '/' both separate, "C:" starts a drive. Pure functions.
#include "platform/win32/Win32Paths.h"

#include <windows.h>

namespace tolvex::platform::win32 {
namespace {

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

}  // namespace

std::string FolderOf(const std::string& file) {
  const std::string::size_type separator = file.find_last_of("\\/");
  const std::string::size_type drive = HasDrive(file) ? 2 : 0;
  if (separator == std::string::npos || separator < drive)
    return drive ? file.substr(0, drive) : ".";
  if (separator == drive) return file.substr(0, drive + 1);  // "\" or "C:\"
  return file.substr(0, separator);
}

std::string BaseNameOf(const std::string& file) {
  const std::string::size_type separator = file.find_last_of("\\/");
  if (separator != std::string::npos) return file.substr(separator + 1);
  return HasDrive(file) ? file.substr(2) : file;
}

std::wstring Wide(const std::string& path) {
  if (path.empty()) return std::wstring();
  const int size = static_cast<int>(path.size());
  int length = MultiByteToWideChar(CP_ACP, 0, path.data(), size, nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, path.data(), size, wide.data(), length);
  return wide;
}

}  // namespace tolvex::platform::win32
