// Win32 errors to Status for the Windows backend, and the text of a Status (which names the
// Win32 error through FormatMessage). Pure functions, safe from any thread.
#include "platform/win32/Win32Status.h"

#include <windows.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace tolvex::platform {

Status StatusFromWin32(uint32_t error) {
  switch (error) {
    case ERROR_SUCCESS:
      return Status::Ok();
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
      return Status::Error(StatusCode::kNotFound, static_cast<int>(error));
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_PRIVILEGE_NOT_HELD:
    case ERROR_USER_MAPPED_FILE:
      return Status::Error(StatusCode::kAccessDenied, static_cast<int>(error));
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return Status::Error(StatusCode::kAlreadyExists, static_cast<int>(error));
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_PARAMETER:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_FUNCTION:
      return Status::Error(StatusCode::kInvalidArgument, static_cast<int>(error));
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_FILE_TOO_LARGE:
      return Status::Error(StatusCode::kNoSpace, static_cast<int>(error));
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return Status::Error(StatusCode::kNoMemory, static_cast<int>(error));
    default:
      return Status::Error(StatusCode::kIoError, static_cast<int>(error));
  }
}

uint32_t Win32ErrorFromErrno(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return ERROR_FILE_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
      return ERROR_ACCESS_DENIED;
    case EEXIST:
      return ERROR_FILE_EXISTS;
    case EINVAL:
    case ENAMETOOLONG:
      return ERROR_INVALID_PARAMETER;
    case ENOSPC:
    case EFBIG:
      return ERROR_DISK_FULL;
    case ENOMEM:
      return ERROR_NOT_ENOUGH_MEMORY;
    case EDEADLK:
      return ERROR_POSSIBLE_DEADLOCK;
    case ENOLCK:
      return ERROR_LOCK_FAILED;
    default:
      return ERROR_GEN_FAILURE;
  }
}

// The reason of a Status is a Win32 error here, so the errno value comes from its code.
int ErrnoFromStatus(const Status& status) {
  switch (status.code()) {
    case StatusCode::kOk:
      return 0;
    case StatusCode::kNotFound:
      return ENOENT;
    case StatusCode::kAccessDenied:
      return EACCES;
    case StatusCode::kIsDirectory:
      return EISDIR;
    case StatusCode::kAlreadyExists:
      return EEXIST;
    case StatusCode::kInvalidArgument:
      return EINVAL;
    case StatusCode::kNoSpace:
      return status.sysError() == ERROR_FILE_TOO_LARGE ? EFBIG : ENOSPC;
    case StatusCode::kNoMemory:
      return ENOMEM;
    case StatusCode::kIoError:
    case StatusCode::kChanged:
    case StatusCode::kNotOwner:
      break;
  }
  return EIO;
}

std::string ErrnoText(int error) {
  char buffer[128];
  if (strerror_s(buffer, sizeof buffer, error) != 0) return "error " + std::to_string(error);
  return buffer;
}

std::string StatusText(const Status& status) {
  std::string text = StatusCodeName(status.code());
  if (status.sysError() != 0) {
    char buffer[256];
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, static_cast<DWORD>(status.sysError()), 0, buffer,
                                  sizeof buffer, nullptr);
    while (length > 0 && (buffer[length - 1] == '\r' || buffer[length - 1] == '\n' ||
                          buffer[length - 1] == ' ' || buffer[length - 1] == '.'))
      --length;
    text += ": ";
    text += length > 0 ? std::string(buffer, length)
                       : "Win32 error " + std::to_string(status.sysError());
  }
  return text;
}

}  // namespace tolvex::platform
