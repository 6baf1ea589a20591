// errno to Status for the POSIX backend, and the text of a Status (which names the errno
// through strerror_r). Pure functions, safe from any thread.
#include "platform/posix/PosixStatus.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace tolvex::platform {

Status StatusFromErrno(int error) {
  switch (error) {
    case 0:
      return Status::Ok();
    case ENOENT:
    case ENOTDIR:
      return Status::Error(StatusCode::kNotFound, error);
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
      return Status::Error(StatusCode::kAccessDenied, error);
    case EISDIR:
      return Status::Error(StatusCode::kIsDirectory, error);
    case EEXIST:
      return Status::Error(StatusCode::kAlreadyExists, error);
    case EINVAL:
    case ENAMETOOLONG:
      return Status::Error(StatusCode::kInvalidArgument, error);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return Status::Error(StatusCode::kNoSpace, error);
    case ENOMEM:
      return Status::Error(StatusCode::kNoMemory, error);
    default:
      return Status::Error(StatusCode::kIoError, error);
  }
}

int ErrnoFromStatus(const Status& status) {
  if (status.ok()) return 0;
  return status.sysError() != 0 ? status.sysError() : EIO;
}

std::string ErrnoText(int error) {
  char buffer[128];
  // GNU strerror_r returns the message, which may or may not live in `buffer`.
  return strerror_r(error, buffer, sizeof buffer);
}

std::string StatusText(const Status& status) {
  std::string text = StatusCodeName(status.code());
  if (status.sysError() != 0) text += ": " + ErrnoText(status.sysError());
  return text;
}

}  // namespace tolvex::platform
