// FolderLock on Windows: a named mutex per folder that holds profile files, named after the
// folder's identity (volume serial number and file index), so that every spelling of the
// folder's path meets the same mutex. Every writer of the platform layer, in any thread of any
// process of the session, takes it around its whole read-modify-replace, so no update is lost.
//
// Why this kind of lock:
//  - A mutex is owned by a thread. Two threads of one process exclude each other just as two
//    processes do, so one lock covers both, as flock() does on POSIX.
//  - It dies with its owner: when the owning thread or process ends (TerminateProcess
//    included), the next waiter gets the mutex with WAIT_ABANDONED. The writer that died left
//    the old file or the new one (the replace is atomic), so the waiter simply goes on.
//  - It needs no lock file beside the user's files, and the data file may not exist yet.
//  - The name lives in the session's namespace ("Local\"): writers in other logon sessions
//    (a service, another user logged on at the same time) are not excluded.
//  - Readers take no lock: the atomic rename lets them see the old file or the new one.
//
// Re-entrance and lock order are those of the POSIX lock (see posix/PosixLock.cpp): a thread
// records the folders it holds and counts a second Acquire up; it waits only for a folder
// that sorts after every folder it holds (by volume, then index) and otherwise tries once and
// fails with ERROR_POSSIBLE_DEADLOCK when the folder is busy. The mutex is released by the
// thread that took it, which is the FolderLock's (and an edit's) thread.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/Os.h"
#include "platform/win32/Win32Calls.h"
#include "platform/win32/Win32Paths.h"
#include "platform/win32/Win32Status.h"

namespace tolvex::platform::os {
namespace {

struct HeldFolder {
  uint64_t device;
  uint64_t index;
  HANDLE mutex;
  int count;
};

// The folder locks this thread holds.
thread_local std::vector<HeldFolder> t_held;

bool SortsBefore(uint64_t device, uint64_t index, const HeldFolder& held) {
  return device != held.device ? device < held.device : index < held.index;
}

}  // namespace

FolderLock::~FolderLock() {
  if (!m_held) return;
  for (auto it = t_held.begin(); it != t_held.end(); ++it) {
    if (it->device != m_device || it->index != m_inode) continue;
    if (--it->count == 0) {
      ReleaseMutex(it->mutex);
      CloseHandle(it->mutex);
      t_held.erase(it);
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
  bool mayWait = true;
  for (HeldFolder& held : t_held) {
    if (held.device == device && held.index == index) {
      ++held.count;
      m_held = true, m_device = device, m_inode = index;
      return Status::Ok();
    }
    if (SortsBefore(device, index, held)) mayWait = false;
  }
  wchar_t name[96];
  std::swprintf(name, sizeof name / sizeof name[0], L"Local\\tolvex-folder-%016llx-%016llx",
                static_cast<unsigned long long>(device), static_cast<unsigned long long>(index));
  HANDLE mutex = CreateMutexW(nullptr, FALSE, name);
  if (!mutex) return StatusFromWin32(GetLastError());
  const DWORD waited = win32::WaitForLock(mutex, mayWait ? INFINITE : 0);
  if (waited != WAIT_OBJECT_0 && waited != WAIT_ABANDONED) {
    const DWORD error = waited == WAIT_TIMEOUT ? ERROR_POSSIBLE_DEADLOCK : GetLastError();
    CloseHandle(mutex);
    return StatusFromWin32(error);
  }
  t_held.push_back({device, index, mutex, 1});
  m_held = true, m_device = device, m_inode = index;
  return Status::Ok();
}

}  // namespace tolvex::platform::os
