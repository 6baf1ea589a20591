// Why the last rendering call failed, as one short English line naming the file concerned.
// The step that fails records the reason where it knows the file and the cause; the exported
// functions start each call with a clean slate and hand the reason to their callers. Kept per
// thread, so calls on different threads never see each other's reasons.
#ifndef TOLVEX_RENDERER_FAILURE_H
#define TOLVEX_RENDERER_FAILURE_H

#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// Records `reason` for this thread's current call and returns `status`, so that a failing
// step reads `return Fail(Status::kPictureUnreadable, "...");`. The first reason of a call is
// kept: it is the cause, later ones are consequences.
Status Fail(Status status, const std::string& reason);

// The same with the system's description of `error` (an errno value) after a colon:
// FailErrno(kOutputUnwritable, "cannot write output /x/m.bmp", EACCES) records
// "cannot write output /x/m.bmp: permission denied".
Status FailErrno(Status status, const std::string& what, int error);

// The system's description of `error`, in lower case: "no such file or directory".
std::string DescribeErrno(int error);

// Forgets this thread's reason; every exported function calls it first.
void ClearFailure();

// The reason recorded for this thread since ClearFailure, or a general line for `status`
// when no step recorded one; "" when `status` is kOk.
std::string FailureReason(Status status);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_FAILURE_H
