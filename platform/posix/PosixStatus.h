// The one mapping from errno values to Status codes for the POSIX backend. Pure functions.
#ifndef TOLVEX_PLATFORM_POSIX_POSIXSTATUS_H
#define TOLVEX_PLATFORM_POSIX_POSIXSTATUS_H

#include "platform/Status.h"

namespace tolvex::platform {

// The Status for the errno value `error`, keeping `error` as its reason.
Status StatusFromErrno(int error);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_POSIX_POSIXSTATUS_H
