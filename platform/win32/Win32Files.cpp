// The Windows implementation of the seam's file functions other than the replace and the lock:
// whole-file reads, the checks before a write, CopyFile, file identity and folder creation.
// Stateless; safe from any thread.
//
// Files are opened with full sharing (read, write and delete), so that our reads never stand
// in the way of another writer's replace. The C runtime's stat() gives no file identity on
// Windows (st_ino is always 0), so identity comes from the volume serial number and the file
// index of GetFileInformationByHandle.
#include <windows.h>

#include <string>

#include "platform/FaultInjection.h"
#include "platform/Os.h"
#include "platform/win32/Win32Calls.h"
#include "platform/win32/Win32Paths.h"
#include "platform/win32/Win32Replace.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform::os {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// FILETIME (100 ns since 1601) as nanoseconds.
int64_t Nanoseconds(LARGE_INTEGER time) { return time.QuadPart * 100; }
int64_t Nanoseconds(FILETIME time) {
  return static_cast<int64_t>((static_cast<uint64_t>(time.dwHighDateTime) << 32) |
                              time.dwLowDateTime) * 100;
}

// The system time in the units of the file times (nanoseconds since 1601), or the clock a test
// set.
int64_t Now() {
  if (const int64_t planned = ClockForTests()) return planned;
  FILETIME now;
  GetSystemTimePreciseAsFileTime(&now);
  return Nanoseconds(now);
}

using win32::Handle;

Status LastError() { return StatusFromWin32(GetLastError()); }

Status FillStamp(HANDLE file, int64_t takenNs, FileStamp* stamp) {
  BY_HANDLE_FILE_INFORMATION info;
  FILE_BASIC_INFO times;
  if (!GetFileInformationByHandle(file, &info) ||
      !GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times))
    return LastError();
  stamp->device = info.dwVolumeSerialNumber;
  stamp->inode = (static_cast<uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
  stamp->size = (static_cast<uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
  stamp->modifiedNs = Nanoseconds(times.LastWriteTime);
  stamp->changedNs = Nanoseconds(times.ChangeTime);
  stamp->takenNs = takenNs;
  stamp->readOnly = (info.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  return Status::Ok();
}

// Whether the times of files on the volume of `file` change with every write, so that equal
// times (with the racy-time rule of ParseCache.cpp) prove equal content: NTFS and ReFS, which
// stamp each write in 100 ns units. Not FAT (two seconds) and not network shares, whose
// server sets the times; files there are always compared byte for byte.
bool TimesTrusted(HANDLE file) {
  wchar_t system[MAX_PATH + 1] = {0};
  if (!GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, nullptr, system,
                                     MAX_PATH + 1))
    return false;
  const std::wstring name(system);
  if (name != L"NTFS" && name != L"ReFS") return false;
  FILE_REMOTE_PROTOCOL_INFO remote;
  return !GetFileInformationByHandleEx(file, FileRemoteProtocolInfo, &remote, sizeof remote);
}

// Reads all of `path`, at most `limit` bytes, or with `startOnly` its first `limit` bytes
// whatever its size; also reports its attributes when `attributes` is given and stamps it
// when `stamp` is. Only files on a disk are read: a pipe or a device is refused at once.
Status ReadAll(const std::string& path, std::string* bytes, DWORD* attributes, FileStamp* stamp,
               uint64_t limit = kMaxProfileBytes, bool startOnly = false) {
  const int64_t takenNs = stamp ? Now() : 0;
  const std::wstring wide = win32::Wide(path);
  if (wide.empty()) return StatusFromWin32(ERROR_FILE_NOT_FOUND);
  const DWORD kind = GetFileAttributesW(wide.c_str());
  if (kind != INVALID_FILE_ATTRIBUTES && (kind & FILE_ATTRIBUTE_DIRECTORY))
    return Status::Error(StatusCode::kIsDirectory, ERROR_ACCESS_DENIED);
  Handle file(win32::OpenFile(wide, GENERIC_READ, kShareAll, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN));
  if (!file.ok()) return LastError();
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return StatusFromWin32(ERROR_INVALID_PARAMETER);
  LARGE_INTEGER size;
  if (!GetFileSizeEx(file.get(), &size)) return LastError();
  if (!startOnly && static_cast<uint64_t>(size.QuadPart) > limit)
    return StatusFromWin32(ERROR_FILE_TOO_LARGE);
  if (attributes) *attributes = kind == INVALID_FILE_ATTRIBUTES ? 0 : kind;
  if (stamp) {
    Status status = FillStamp(file.get(), takenNs, stamp);
    if (!status.ok()) return status;
    stamp->timesTrusted = TimesTrusted(file.get());
  }
  bytes->clear();
  // One read usually does it: the buffer is sized from the file, one byte over to see the end.
  DWORD chunk = size.QuadPart > 0 ? static_cast<DWORD>(size.QuadPart) + 1 : 65536;
  if (startOnly) chunk = static_cast<DWORD>(limit);
  size_t filled = 0;
  for (;;) {
    if (startOnly && filled == limit) break;
    if (startOnly) chunk = static_cast<DWORD>(limit - filled);
    if (!startOnly && filled > limit) {
      bytes->clear();
      return StatusFromWin32(ERROR_FILE_TOO_LARGE);
    }
    bytes->resize(filled + chunk);
    DWORD got = 0;
    if (!win32::ReadFrom(file.get(), bytes->data() + filled, chunk, &got)) {
      Status status = LastError();
      bytes->clear();
      return status;
    }
    if (got == 0) break;
    filled += got;
    if (chunk < 65536) chunk = 65536;
  }
  bytes->resize(filled);
  return Status::Ok();
}

// The folder's identity: its volume serial number and file index.
Status IdentifyFolder(const std::string& folder, uint64_t* device, uint64_t* index) {
  Handle handle(CreateFileW(win32::Wide(folder).c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!handle.ok()) return LastError();
  BY_HANDLE_FILE_INFORMATION info;
  if (!GetFileInformationByHandle(handle.get(), &info)) return LastError();
  if (!(info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return StatusFromWin32(ERROR_DIRECTORY);
  *device = info.dwVolumeSerialNumber;
  *index = (static_cast<uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
  return Status::Ok();
}

}  // namespace

Status ReadWholeFile(const std::string& path, std::string* bytes, FileStamp* stamp,
                     uint64_t limit) {
  return ReadAll(path, bytes, nullptr, stamp, limit);
}

Status ReadFileStart(const std::string& path, size_t count, std::string* bytes,
                     FileStamp* stamp) {
  return ReadAll(path, bytes, nullptr, stamp, count, true);
}

size_t LastSeparator(std::string_view path) { return path.find_last_of("\\/"); }

bool IsAbsolutePath(std::string_view path) {
  return (!path.empty() && (path[0] == '\\' || path[0] == '/')) ||
         (path.size() >= 2 && path[1] == ':');
}

std::string FolderOf(const std::string& file) { return win32::FolderOf(file); }

std::string BaseNameOf(const std::string& file) { return win32::BaseNameOf(file); }

Status StampFile(const std::string& path, FileStamp* stamp) {
  Handle file(CreateFileW(win32::Wide(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.ok()) return LastError();
  return FillStamp(file.get(), 0, stamp);
}

// Windows follows links in every open; the name given is the one replaced.
Status ResolveLinks(const std::string& path, std::string* target) {
  *target = path;
  return Status::Ok();
}

Status CheckReplaceable(const std::string& target, bool* exists) {
  *exists = false;
  const std::wstring wide = win32::Wide(target);
  if (wide.empty()) return StatusFromWin32(ERROR_INVALID_PARAMETER);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if (attributes & FILE_ATTRIBUTE_DIRECTORY)
      return Status::Error(StatusCode::kIsDirectory, ERROR_ACCESS_DENIED);
    // The read-only attribute holds for every caller, administrators included.
    if (attributes & FILE_ATTRIBUTE_READONLY) return StatusFromWin32(ERROR_ACCESS_DENIED);
    // Whether the file's ACL lets us write it: an open for writing, shared with everyone, that
    // changes nothing. A sharing violation means another program holds the file open for
    // now, which the replace waits out for a while (Win32Replace.cpp).
    Handle probe(CreateFileW(wide.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!probe.ok() && GetLastError() != ERROR_SHARING_VIOLATION) return LastError();
    *exists = true;
  } else {
    const DWORD error = GetLastError();
    if (error != ERROR_FILE_NOT_FOUND) return StatusFromWin32(error);
  }
  // The replace creates a file in the folder, so the folder must exist.
  const DWORD folder = GetFileAttributesW(win32::Wide(win32::FolderOf(target)).c_str());
  if (folder == INVALID_FILE_ATTRIBUTES) return LastError();
  if (!(folder & FILE_ATTRIBUTE_DIRECTORY)) return StatusFromWin32(ERROR_DIRECTORY);
  return Status::Ok();
}

Status ReplaceFile(const std::string& target, std::string_view bytes) {
  return win32::ReplaceAtomically(
      target, [bytes](const ByteSink& write) { return write(bytes); }, nullptr);
}

Status ReplaceFileFrom(const std::string& target, const ContentSource& content) {
  return win32::ReplaceAtomically(target, content, nullptr);
}

Status CopyFile(const std::string& source, const std::string& target, bool failIfExists) {
  if (source.empty() || target.empty()) return StatusFromWin32(ERROR_INVALID_PARAMETER);
  std::string bytes;
  DWORD attributes = 0;
  // The source needs no lock: writers replace it atomically, so any read sees a whole file.
  Status status = ReadAll(source, &bytes, &attributes, nullptr);
  if (!status.ok()) return status;

  FolderLock lock;
  status = lock.Acquire(target);
  if (!status.ok()) return status;
  bool exists = false;
  status = CheckReplaceable(target, &exists);
  if (!status.ok()) return status;
  if (exists && failIfExists) return StatusFromWin32(ERROR_FILE_EXISTS);
  // The copy takes the source's attributes, so a copy of a read-only file is read-only.
  const uint32_t copyAttributes =
      attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                    FILE_ATTRIBUTE_ARCHIVE);
  return win32::ReplaceAtomically(
      target, [&bytes](const ByteSink& write) { return write(bytes); }, &copyAttributes);
}

Status IdentifyFile(const std::string& target, FileIdentity* identity) {
  Status status = IdentifyFolder(win32::FolderOf(target), &identity->device, &identity->inode);
  if (!status.ok()) return status;
  // Names differ only in case on Windows' file systems do not name different files.
  std::wstring name = win32::Wide(win32::BaseNameOf(target));
  CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
  identity->name.assign(reinterpret_cast<const char*>(name.data()), name.size() * sizeof(wchar_t));
  return Status::Ok();
}

Status CreateFolders(const std::string& folder) {
  if (folder.empty()) return StatusFromWin32(ERROR_PATH_NOT_FOUND);
  // Each prefix that ends before a separator, skipping a drive ("C:") and the root itself.
  std::string::size_type position = folder.size() >= 2 && folder[1] == ':' ? 2 : 0;
  for (;;) {
    position = folder.find_first_of("\\/", position + 1);
    const std::string part = folder.substr(0, position);
    if (!part.empty() && part.back() != ':' && !CreateDirectoryW(win32::Wide(part).c_str(), nullptr)) {
      const DWORD error = GetLastError();
      if (error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED) return StatusFromWin32(error);
    }
    if (position == std::string::npos) break;
  }
  const DWORD attributes = GetFileAttributesW(win32::Wide(folder).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastError();
  if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return StatusFromWin32(ERROR_DIRECTORY);
  return Status::Ok();
}

}  // namespace tolvex::platform::os
