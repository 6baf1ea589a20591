// Reading a template or picture whole, without blocking and within a size limit, through the
// OS seam's guarded read.
#include "renderer/InputFile.h"

#include "platform/Os.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

std::string Megabytes(size_t bytes) { return std::to_string(bytes >> 20) + " MB"; }

}  // namespace

Status ReadInputFile(const std::string& path, const char* kind, size_t limit, Status failure,
                     InputFile* file) {
  namespace os = platform::os;
  using platform::StatusCode;
  const std::string what = std::string("cannot read ") + kind + " " + path;
  std::string bytes;
  os::FileStamp stamp;
  const platform::Status read = os::ReadWholeFile(path, &bytes, &stamp, limit);
  switch (read.code()) {
    case StatusCode::kOk:
      break;
    case StatusCode::kIsDirectory:
      return Fail(failure, what + ": it is a folder");
    case StatusCode::kInvalidArgument:
      return Fail(failure, what + ": not a regular file");
    case StatusCode::kNoSpace:
      return Fail(failure, what + ": larger than " + Megabytes(limit));
    default:
      return FailErrno(failure, what, platform::ErrnoFromStatus(read));
  }
  file->bytes = std::move(bytes);
  file->device = stamp.device;
  file->inode = stamp.inode;
  return Status::kOk;
}

}  // namespace tolvex::render
