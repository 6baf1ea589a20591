// The words the tool gives a failure of the platform layer's OS seam (platform/Os.h): the
// system's own message for it ("Permission denied"), as the C library says it, on every system;
// and the words for a file's size in its messages.
#ifndef TOLVEX_TOOLS_REASON_H
#define TOLVEX_TOOLS_REASON_H

#include "platform/Status.h"

#include <cstdint>
#include <string>

namespace menutool {

std::string Reason(const tolvex::platform::Status& status);

// `bytes` in whole GB or MB, or in bytes below a megabyte: "2 GB", "17 MB", "300 bytes".
std::string SizeText(uint64_t bytes);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_REASON_H
