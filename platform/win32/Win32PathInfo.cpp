// The Windows implementation of the seam's looks at a path before it is used: what it names,
// whether this process may read or write it, a private temporary folder, and the standard
// streams. Stateless; safe from any thread.
//
// A path is looked at through a handle opened for no access at all, which neither reads the
// file nor stands in the way of anyone; the handle's type tells a file on a disk from a pipe
// or a device (NUL, CON, COM1), which have no attributes of their own.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <cstdio>
#include <string>

#include "platform/Os.h"
#include "platform/win32/Win32Calls.h"
#include "platform/win32/Win32Paths.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform::os {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// 100 ns units between 1601, where file times start, and 1970.
constexpr int64_t kUnixEpochIn100ns = 116444736000000000;

Status LastError() { return StatusFromWin32(GetLastError()); }

using win32::Handle;

}  // namespace

Status LookAt(const std::string& path, PathInfo* info, bool followLinks) {
  const std::wstring wide = win32::Wide(path);
  if (wide.empty()) return StatusFromWin32(ERROR_FILE_NOT_FOUND);
  const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | (followLinks ? 0 : FILE_FLAG_OPEN_REPARSE_POINT);
  Handle handle(CreateFileW(wide.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, flags, nullptr));
  if (!handle.ok()) return LastError();
  *info = PathInfo{};
  info->ownedByCaller = true;
  switch (GetFileType(handle.get())) {
    case FILE_TYPE_DISK: break;
    case FILE_TYPE_PIPE: info->kind = PathKind::kPipe; return Status::Ok();
    case FILE_TYPE_CHAR: info->kind = PathKind::kDevice; return Status::Ok();
    default: info->kind = PathKind::kOther; return Status::Ok();
  }
  BY_HANDLE_FILE_INFORMATION file;
  if (!GetFileInformationByHandle(handle.get(), &file)) return LastError();
  info->kind = (file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? PathKind::kFolder
               : (file.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) ? PathKind::kOther
                                                                        : PathKind::kFile;
  info->size = (static_cast<uint64_t>(file.nFileSizeHigh) << 32) | file.nFileSizeLow;
  const int64_t written = static_cast<int64_t>(
      (static_cast<uint64_t>(file.ftLastWriteTime.dwHighDateTime) << 32) |
      file.ftLastWriteTime.dwLowDateTime);
  info->modifiedSeconds = (written - kUnixEpochIn100ns) / 10000000;
  info->readOnly = (file.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  return Status::Ok();
}

Status CheckReadable(const std::string& path) {
  const std::wstring wide = win32::Wide(path);
  if (wide.empty()) return StatusFromWin32(ERROR_FILE_NOT_FOUND);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
    return Status::Error(StatusCode::kIsDirectory, ERROR_ACCESS_DENIED);
  Handle file(win32::OpenFile(wide, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
  if (!file.ok()) return LastError();
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return StatusFromWin32(ERROR_INVALID_PARAMETER);
  return Status::Ok();
}

Status CheckWritable(const std::string& path) {
  // An open for writing that changes nothing, shared with everyone; a sharing violation only
  // means another program has the file open for now.
  Handle probe(win32::OpenFile(win32::Wide(path), GENERIC_WRITE, kShareAll, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL));
  if (!probe.ok() && GetLastError() != ERROR_SHARING_VIOLATION) return LastError();
  return Status::Ok();
}

Status CheckFolderWritable(const std::string& folder) {
  // Only the folder's being there is looked at: whether its ACL lets us make a file is told by
  // the write itself, as the replace does.
  const DWORD attributes = GetFileAttributesW(win32::Wide(folder).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastError();
  if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return StatusFromWin32(ERROR_DIRECTORY);
  return Status::Ok();
}

Status MakePrivateFolder(const std::string& prefix, std::string* folder) {
  // The temporary folder is the user's own (%TEMP%, under the profile), so a folder made in it
  // inherits an ACL that lets in only this user and the administrators.
  char temp[MAX_PATH + 1];
  const DWORD length = GetTempPathA(sizeof temp, temp);
  if (length == 0 || length > MAX_PATH) return LastError();
  static std::atomic<unsigned> made{0};
  static const char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  for (int attempt = 0; attempt < 100; ++attempt) {
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    uint64_t seed = static_cast<uint64_t>(ticks.QuadPart) * 6364136223846793005ull +
                    GetCurrentProcessId() * 1442695040888963407ull + made++;
    std::string name = std::string(temp, length) + prefix;
    for (int i = 0; i < 6; ++i, seed /= 36) name += kLetters[seed % 36];
    if (CreateDirectoryW(win32::Wide(name).c_str(), nullptr)) {
      *folder = name;
      return Status::Ok();
    }
    if (GetLastError() != ERROR_ALREADY_EXISTS) return LastError();
  }
  return StatusFromWin32(ERROR_ALREADY_EXISTS);
}

bool StandardOutputIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

void UseBinaryStandardStreams() {
  for (FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

}  // namespace tolvex::platform::os
