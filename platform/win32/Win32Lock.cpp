// FolderLock on Windows: an exclusive byte-range lock (LockFileEx) on a lock file that stands
// for the folder holding the profile file. Every writer of the platform layer, in any thread
// of any process of the user, takes it around its whole read-modify-replace, so no update is
// lost.
//
// Why this kind of lock:
//  - A byte-range lock belongs to the handle it was taken through. Two threads of one process
//    that each open the lock file exclude each other just as two processes do, so one lock
//    covers threads and processes alike, as flock() does on POSIX. It can be released from any
//    thread (an edit dropped by another thread), and the system releases it when its process
//    ends, TerminateProcess included. A named mutex would be neither: it must be released by
//    the thread that took it.
//  - The folder itself cannot carry a byte-range lock, and the data file cannot either (each
//    write renames a new file over it; it may not exist yet). So each folder has a lock file,
//    named after the folder's identity (volume serial number and file index, so every spelling
//    of the path meets the same file), in the user's own lock folder
//    (%LOCALAPPDATA%\Tolvex\Locks, else the temporary folder) rather than beside the user's
//    files. The price: writers running as different users are not excluded from each other,
//    and the lock folder keeps one empty file per folder ever written.
//  - Readers take no lock: the atomic rename lets them see the old file or the new one.
//
// Re-entrance, the table of held locks and the lock order are those of the POSIX lock (see
// posix/PosixLock.cpp): a thread counts a second Acquire of a folder it holds up; it waits only
// for a folder that sorts after every folder it holds (by volume, then index) and otherwise
// tries once and fails with ERROR_POSSIBLE_DEADLOCK when the folder is busy. Windows has no
// fork(), so an entry's process is always this one.
#include "platform/win32/Win32Lock.h"

#include <windows.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/Os.h"
#include "platform/win32/Win32Calls.h"
#include "platform/win32/Win32Paths.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform {
namespace win32 {
namespace {

// The user's lock folder, made on first use.
std::wstring LockFolder() {
  static const std::wstring folder = [] {
    wchar_t base[MAX_PATH + 1];
    DWORD length = GetEnvironmentVariableW(L"LOCALAPPDATA", base, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH) length = GetTempPathW(MAX_PATH + 1, base);
    std::wstring made(base, length);
    if (!made.empty() && made.back() != L'\\') made += L'\\';
    made += L"Tolvex";
    CreateDirectoryW(made.c_str(), nullptr);
    made += L"\\Locks";
    CreateDirectoryW(made.c_str(), nullptr);
    return made;
  }();
  return folder;
}

std::wstring LockFileName(uint64_t device, uint64_t index) {
  wchar_t name[64];
  std::swprintf(name, sizeof name / sizeof name[0], L"\\%016llx-%016llx.lock",
                static_cast<unsigned long long>(device), static_cast<unsigned long long>(index));
  return LockFolder() + name;
}

}  // namespace

Status LockFileOf(const std::string& file, std::wstring* path) {
  os::FileIdentity identity;
  Status status = os::IdentifyFile(file, &identity);
  if (!status.ok()) return status;
  *path = LockFileName(identity.device, identity.inode);
  return Status::Ok();
}

}  // namespace win32

namespace os {
namespace {

struct HeldFolder {
  uint64_t device;
  uint64_t index;
  std::thread::id thread;
  HANDLE file;
  int count;
};

// The folder locks held in this process, and the mutex that guards them. Never destroyed, so
// that a thread ending after main() returned still finds them.
struct HeldTable {
  std::mutex mutex;
  std::vector<HeldFolder> held;
};

HeldTable& Table() {
  static HeldTable* table = new HeldTable;
  return *table;
}

bool SortsBefore(uint64_t device, uint64_t index, const HeldFolder& held) {
  return device != held.device ? device < held.device : index < held.index;
}

}  // namespace

int ProcessId() { return static_cast<int>(GetCurrentProcessId()); }

FolderLock::~FolderLock() {
  if (!m_held) return;
  HeldTable& table = Table();
  std::lock_guard<std::mutex> guard(table.mutex);
  for (auto it = table.held.begin(); it != table.held.end(); ++it) {
    if (it->device != m_device || it->index != m_inode || it->thread != m_thread) continue;
    if (--it->count == 0) {
      OVERLAPPED at{};
      UnlockFileEx(it->file, 0, 1, 0, &at);
      CloseHandle(it->file);
      table.held.erase(it);
    }
    return;
  }
}

Status FolderLock::Acquire(const std::string& file) {
  if (m_held) return Status::Error(StatusCode::kInvalidArgument);
  FileIdentity identity;
  Status status = IdentifyFile(file, &identity);
  if (!status.ok()) return status;
  const uint64_t device = identity.device, index = identity.inode;
  const std::thread::id thread = std::this_thread::get_id();
  HeldTable& table = Table();
  bool mayWait = true;
  {
    std::lock_guard<std::mutex> guard(table.mutex);
    for (HeldFolder& held : table.held) {
      if (held.thread != thread) continue;
      if (held.device == device && held.index == index) {
        ++held.count;
        m_held = true, m_device = device, m_inode = index, m_pid = ProcessId(), m_thread = thread;
        return Status::Ok();
      }
      if (SortsBefore(device, index, held)) mayWait = false;
    }
  }
  // The lock file is never deleted while open (no delete sharing), and never needs to be.
  HANDLE lockFile = CreateFileW(win32::LockFileName(device, index).c_str(),
                                GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (lockFile == INVALID_HANDLE_VALUE) return StatusFromWin32(GetLastError());
  // Waited for without the table's mutex: only this thread adds entries for itself.
  if (!win32::LockWhole(lockFile, mayWait)) {
    DWORD error = GetLastError();
    if (error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING) error = ERROR_POSSIBLE_DEADLOCK;
    CloseHandle(lockFile);
    return StatusFromWin32(error);
  }
  std::lock_guard<std::mutex> guard(table.mutex);
  table.held.push_back({device, index, thread, lockFile, 1});
  m_held = true, m_device = device, m_inode = index, m_pid = ProcessId(), m_thread = thread;
  return Status::Ok();
}

}  // namespace os
}  // namespace tolvex::platform
