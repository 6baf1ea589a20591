// The one mapping from Win32 error codes to Status codes for the Windows backend, and the
// errno values a test plans failures with (FaultInjection.h) as the Win32 codes a real call
// would report. Pure functions.
#ifndef TOLVEX_PLATFORM_WIN32_WIN32STATUS_H
#define TOLVEX_PLATFORM_WIN32_WIN32STATUS_H

#include <cstdint>

#include "platform/Status.h"

namespace tolvex::platform {

// The Status for the Win32 error `error` (GetLastError()), keeping `error` as its reason.
Status StatusFromWin32(uint32_t error);

// The Win32 error closest to the errno value `error`.
uint32_t Win32ErrorFromErrno(int error);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_WIN32_WIN32STATUS_H
