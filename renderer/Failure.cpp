// Why the last rendering call failed, kept per thread.
#include "renderer/Failure.h"

#include <cctype>

#include "platform/Status.h"

namespace tolvex::render {
namespace {

thread_local std::string t_reason;

const char* GeneralReason(Status status) {
  switch (status) {
    case Status::kOk:
      return "";
    case Status::kBadArgument:
      return "bad argument";
    case Status::kTemplateUnreadable:
      return "cannot read the template";
    case Status::kPictureUnreadable:
      return "cannot read a picture";
    case Status::kPictureTooLarge:
      return "a picture is too large";
    case Status::kOutputUnwritable:
      return "cannot write the output";
    case Status::kRecordFailed:
      return "cannot record the output name in the template";
    case Status::kDrawingFailed:
      return "drawing failed (out of memory?)";
  }
  return "rendering failed";
}

}  // namespace

Status Fail(Status status, const std::string& reason) {
  if (t_reason.empty()) t_reason = reason;
  return status;
}

Status FailErrno(Status status, const std::string& what, int error) {
  return Fail(status, what + ": " + DescribeErrno(error));
}

std::string DescribeErrno(int error) {
  std::string text = platform::ErrnoText(error);
  if (!text.empty()) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

void ClearFailure() { t_reason.clear(); }

std::string FailureReason(Status status) {
  if (status == Status::kOk) return std::string();
  return t_reason.empty() ? std::string(GeneralReason(status)) : t_reason;
}

}  // namespace tolvex::render
