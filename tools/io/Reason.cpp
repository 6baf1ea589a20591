// The text of a failure of the OS seam (see Reason.h).
#include "tools/io/Reason.h"

#include <cstring>

namespace menutool {

std::string Reason(const tolvex::platform::Status& status) {
  return std::strerror(tolvex::platform::ErrnoFromStatus(status));
}

}  // namespace menutool
