// The forwarding wrapper over the Win32 calls that can fail a profile write: every open,
// read, write, flush, rename and lock of the Windows backend goes through here, so that a
// test can make the nth one fail (FaultInjection.h). A planned failure sets the last error as
// the real call would. Thread-safe.
#ifndef TOLVEX_PLATFORM_WIN32_WIN32CALLS_H
#define TOLVEX_PLATFORM_WIN32_WIN32CALLS_H

#include <windows.h>

#include <string>

namespace tolvex::platform::win32 {

// CreateFileW; INVALID_HANDLE_VALUE on failure.
HANDLE OpenFile(const std::wstring& path, DWORD access, DWORD share, DWORD disposition,
                DWORD flags);
bool ReadFrom(HANDLE file, void* buffer, DWORD count, DWORD* got);
bool WriteTo(HANDLE file, const void* buffer, DWORD count, DWORD* written);
bool Flush(HANDLE file);
// MoveFileExW replacing `to`, written through to the disk before it returns.
bool MoveOver(const std::wstring& from, const std::wstring& to);
// LockFileEx of the first byte of `file`, exclusive; waits for it when `wait`, else fails at
// once with ERROR_LOCK_VIOLATION when another handle holds it.
bool LockWhole(HANDLE file, bool wait);

// Closes `handle` keeping the last error as it was; for cleanup paths.
void CloseQuietly(HANDLE handle);

// A file handle closed (quietly) when it goes out of scope.
class Handle {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() { CloseQuietly(m_handle); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  HANDLE get() const { return m_handle; }
  bool ok() const { return m_handle != INVALID_HANDLE_VALUE; }

 private:
  HANDLE m_handle;
};

}  // namespace tolvex::platform::win32

#endif  // TOLVEX_PLATFORM_WIN32_WIN32CALLS_H
