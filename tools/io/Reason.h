// The words the tool gives a failure of the platform layer's OS seam (platform/Os.h): the
// system's own message for it ("Permission denied"), as the C library says it, on every system.
#ifndef TOLVEX_TOOLS_REASON_H
#define TOLVEX_TOOLS_REASON_H

#include "platform/Status.h"

#include <string>

namespace menutool {

std::string Reason(const tolvex::platform::Status& status);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_REASON_H
