// The atomic replace of a file on Windows: the new bytes go to a file beside the old one (same
// folder, so same volume), are flushed with FlushFileBuffers, and are renamed over the old name
// in one step of the file system (Win32Calls.cpp: the rename of POSIX semantics where the
// system has it, else MoveFileExW with REPLACE_EXISTING and WRITE_THROUGH). A reader, a crash
// or a TerminateProcess at any moment sees the old file or the new one, never a mix, and a
// failure at any step leaves the old file byte for byte and no temporary file behind. (A
// writer terminated before the rename leaves its temporary file; the next write of the same
// file removes it.) Callers serialise writers with FolderLock; no state of its own.
//
// Why not ReplaceFileW: it keeps more of the old file (ACLs, creation time) but is several
// steps, may fail half-way with the replacement moved aside, and needs the old file to exist.
// The rename is one step. We carry the old file's attributes (read-only excepted: a read-only
// file is never replaced) to the new one ourselves; its ACL is the folder's inherited one.
//
// Sharing: our readers open with FILE_SHARE_DELETE. With the rename of POSIX semantics
// (Windows 10 1607 and later, on NTFS) an open reader never stands in its way; with the classic
// rename (older systems, other file systems, Wine) a file open at that moment, by our reader
// or by another program (an editor, a virus scanner), makes it fail with a sharing violation
// or access denied. We retry for about a second, then fail with the old file left as it was.
#include "platform/win32/Win32Replace.h"

#include <windows.h>

#include <atomic>
#include <cstdio>

#include "platform/win32/Win32Calls.h"
#include "platform/win32/Win32Paths.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform::win32 {
namespace {

constexpr int kRenameAttempts = 40;
constexpr DWORD kRenamePauseMs = 25;

// The start of every temporary name for `base`. It starts with a dot, as on other systems.
std::string TemporaryPrefix(const std::string& base) { return "." + base + ".tolvex-"; }

std::string TemporaryName(const std::string& base) {
  static std::atomic<unsigned> counter{0};
  char suffix[64];
  std::snprintf(suffix, sizeof suffix, "%lu-%u", static_cast<unsigned long>(GetCurrentProcessId()),
                counter.fetch_add(1, std::memory_order_relaxed));
  return TemporaryPrefix(base) + suffix;
}

// Removes the temporary files of `base` that a writer terminated before its move left behind.
// A temporary name exists only while its writer holds the FolderLock, which our caller holds
// now, so any such file found here is stale.
void RemoveStaleTemporaries(const std::string& folder, const std::string& base) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW(Wide(folder + "\\" + TemporaryPrefix(base) + "*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    DeleteFileW((Wide(folder) + L"\\" + found.cFileName).c_str());
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

// The temporary file being prepared in the target's folder; removed again on every failure.
class PendingFile {
 public:
  explicit PendingFile(std::wstring path) : m_path(std::move(path)) {}
  ~PendingFile() {
    CloseQuietly(m_handle);
    if (!m_path.empty()) DeleteFileW(m_path.c_str());
  }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  Status Create() {
    m_handle = OpenFile(m_path, GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    if (m_handle == INVALID_HANDLE_VALUE) {
      const DWORD error = GetLastError();
      m_path.clear();  // not ours: nothing to remove
      return StatusFromWin32(error);
    }
    return Status::Ok();
  }

  Status Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const DWORD piece = bytes.size() > (1u << 30) ? (1u << 30) : static_cast<DWORD>(bytes.size());
      DWORD written = 0;
      if (!WriteTo(m_handle, bytes.data(), piece, &written)) return StatusFromWin32(GetLastError());
      if (written == 0) return StatusFromWin32(ERROR_DISK_FULL);
      bytes.remove_prefix(written);
    }
    return Status::Ok();
  }

  // Flushes and closes the file, which must be closed before it can be moved.
  Status Finish() {
    if (!Flush(m_handle)) return StatusFromWin32(GetLastError());
    HANDLE handle = m_handle;
    m_handle = INVALID_HANDLE_VALUE;
    if (!CloseHandle(handle)) return StatusFromWin32(GetLastError());
    return Status::Ok();
  }

  // Moves the file over `target`; afterwards it is no longer ours to remove.
  Status MoveOverTarget(const std::wstring& target) {
    for (int attempt = 1;; ++attempt) {
      if (MoveOver(m_path, target)) break;
      const DWORD error = GetLastError();
      const bool busy = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
                        error == ERROR_LOCK_VIOLATION;
      if (!busy || attempt == kRenameAttempts) return StatusFromWin32(error);
      Sleep(kRenamePauseMs);
    }
    m_path.clear();
    return Status::Ok();
  }

  const std::wstring& path() const { return m_path; }

 private:
  std::wstring m_path;
  HANDLE m_handle = INVALID_HANDLE_VALUE;
};

}  // namespace

Status ReplaceAtomically(const std::string& target, const os::ContentSource& content,
                         const uint32_t* attributes) {
  const std::wstring wideTarget = Wide(target);
  DWORD keep = FILE_ATTRIBUTE_NORMAL;
  if (attributes) {
    keep = *attributes;
  } else {
    const DWORD old = GetFileAttributesW(wideTarget.c_str());
    if (old != INVALID_FILE_ATTRIBUTES && !(old & FILE_ATTRIBUTE_DIRECTORY))
      keep = old & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                    FILE_ATTRIBUTE_NOT_CONTENT_INDEXED);
  }

  const std::string folder = FolderOf(target);
  const std::string base = BaseNameOf(target);
  RemoveStaleTemporaries(folder, base);
  Status status;
  PendingFile pending(Wide(folder + "\\" + TemporaryName(base)));
  status = pending.Create();
  if (!status.ok()) return status;
  status = content([&](std::string_view piece) { return pending.Write(piece); });
  if (!status.ok()) return status;
  status = pending.Finish();
  if (!status.ok()) return status;
  // A read-only temporary file can still be moved; the attributes go with it.
  if (keep != FILE_ATTRIBUTE_NORMAL && keep != 0)
    SetFileAttributesW(pending.path().c_str(), keep);
  return pending.MoveOverTarget(wideTarget);
}

}  // namespace tolvex::platform::win32
