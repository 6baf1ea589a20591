// The text of a failure of the OS seam (see Reason.h).
#include "tools/io/Reason.h"

namespace menutool {

std::string Reason(const tolvex::platform::Status& status) {
  return tolvex::platform::ErrnoText(tolvex::platform::ErrnoFromStatus(status));
}

}  // namespace menutool
