// Status: the reason an operation of the platform layer failed, carried from the OS seam up to
// the extern "C" facade, where it collapses to TRUE/FALSE or the default text. A plain value;
// no shared state.
#ifndef TOLVEX_PLATFORM_STATUS_H
#define TOLVEX_PLATFORM_STATUS_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace tolvex::platform {

enum class StatusCode {
  kOk,
  kNotFound,        // the file or a folder on its path does not exist
  kAccessDenied,    // read-only file, no permission, or a folder we cannot write into
  kIsDirectory,     // the path names a folder
  kAlreadyExists,   // CopyFileA with fail-if-exists and an existing target
  kInvalidArgument, // empty path, NULL name where one is needed
  kNoSpace,         // disk full, quota, or the file-size limit
  kNoMemory,
  kIoError,         // anything else the OS reported
  kChanged,         // another program changed the file while an edit held it
  kNotOwner,        // an edit used by a thread or process other than the one that began it
};

class Status {
 public:
  Status() = default;
  static Status Ok() { return Status(); }
  static Status Error(StatusCode code, int sysError = 0) { return Status(code, sysError); }

  bool ok() const { return m_code == StatusCode::kOk; }
  StatusCode code() const { return m_code; }
  // The errno value behind the failure, or 0 when it did not come from the OS.
  int sysError() const { return m_sysError; }

 private:
  Status(StatusCode code, int sysError) : m_code(code), m_sysError(sysError) {}

  StatusCode m_code = StatusCode::kOk;
  int m_sysError = 0;
};

// Where content is written piece by piece: each call takes the next piece, and a failure ends
// the writing with its Status.
using ByteSink = std::function<Status(std::string_view piece)>;

// The name of `code` in a few English words, the same on every system.
inline const char* StatusCodeName(StatusCode code) {
  static const char* const kNames[] = {"ok",          "not found",      "access denied",
                                       "is a folder", "already exists", "invalid argument",
                                       "no space",    "out of memory",  "I/O error",
                                       "changed by another program during the edit",
                                       "the edit belongs to another thread or process"};
  static_assert(sizeof kNames / sizeof kNames[0] == static_cast<size_t>(StatusCode::kNotOwner) + 1,
                "a name for every code");
  return kNames[static_cast<int>(code)];
}

// A short English description of `status` (its code's name and the system's message), for
// tests and debugging.
std::string StatusText(const Status& status);

// The errno value that says why `status` failed (0 for success), for the C functions that
// report errno values: the system's own where it is one, else the nearest to its code.
int ErrnoFromStatus(const Status& status);

// The C library's description of the errno value `error`: "No such file or directory".
std::string ErrnoText(int error);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_STATUS_H
