// The Win32 calls behind the fault-injection seam. A planned failure sets the last error to
// the Win32 code of the planned errno and fails exactly as the real call would.
#include "platform/win32/Win32Calls.h"

#include <cstring>

#include "platform/FaultInjection.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform::win32 {
namespace {

bool Planned(Primitive primitive) {
  if (int error = TakePlannedFailure(primitive)) {
    SetLastError(Win32ErrorFromErrno(error));
    return true;
  }
  return false;
}

}  // namespace

HANDLE OpenFile(const std::wstring& path, DWORD access, DWORD share, DWORD disposition,
                DWORD flags) {
  if (Planned(Primitive::Open)) return INVALID_HANDLE_VALUE;
  // Handles are never inherited: a child started meanwhile must not keep a file open.
  return CreateFileW(path.c_str(), access, share, nullptr, disposition, flags, nullptr);
}

bool ReadFrom(HANDLE file, void* buffer, DWORD count, DWORD* got) {
  if (Planned(Primitive::Read)) return false;
  return ::ReadFile(file, buffer, count, got, nullptr) != FALSE;
}

bool WriteTo(HANDLE file, const void* buffer, DWORD count, DWORD* written) {
  if (Planned(Primitive::Write)) return false;
  return ::WriteFile(file, buffer, count, written, nullptr) != FALSE;
}

bool Flush(HANDLE file) {
  if (Planned(Primitive::Sync)) return false;
  return ::FlushFileBuffers(file) != FALSE;
}

namespace {

// The rename with POSIX semantics (Windows 10 1607 and later, on NTFS): the new file takes the
// name even while a reader holds the old one open with delete sharing, and that reader goes on
// reading the old bytes. False with the last error set when the system or the file system
// cannot do it.
bool RenameWithPosixSemantics(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD kReplaceIfExists = 0x1, kPosixSemantics = 0x2;
  constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);  // FileRenameInfoEx
  HANDLE file = CreateFileW(from.c_str(), DELETE | SYNCHRONIZE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const size_t nameBytes = to.size() * sizeof(wchar_t);
  std::string buffer(sizeof(FILE_RENAME_INFO) + nameBytes, '\0');
  auto* info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
  // The first member is a BOOLEAN before Windows 10 and a union with the DWORD flags since.
  const DWORD flags = kReplaceIfExists | kPosixSemantics;
  std::memcpy(info, &flags, sizeof flags);
  info->RootDirectory = nullptr;
  info->FileNameLength = static_cast<DWORD>(nameBytes);
  std::memcpy(info->FileName, to.data(), nameBytes);
  const bool renamed = SetFileInformationByHandle(file, kRenameInfoEx, info,
                                                  static_cast<DWORD>(buffer.size())) != FALSE;
  CloseQuietly(file);
  return renamed;
}

}  // namespace

bool MoveOver(const std::wstring& from, const std::wstring& to) {
  if (Planned(Primitive::Rename)) return false;
  if (RenameWithPosixSemantics(from, to)) return true;
  return ::MoveFileExW(from.c_str(), to.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

bool LockWhole(HANDLE file, bool wait) {
  if (Planned(Primitive::Lock)) return false;
  OVERLAPPED at{};
  const DWORD flags = LOCKFILE_EXCLUSIVE_LOCK | (wait ? 0 : LOCKFILE_FAIL_IMMEDIATELY);
  return ::LockFileEx(file, flags, 0, 1, 0, &at) != FALSE;
}

void CloseQuietly(HANDLE handle) {
  if (handle == INVALID_HANDLE_VALUE || handle == nullptr) return;
  DWORD saved = GetLastError();
  ::CloseHandle(handle);
  SetLastError(saved);
}

}  // namespace tolvex::platform::win32
