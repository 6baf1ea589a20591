// The text of a failure of the OS seam, and of a file's size (see Reason.h).
#include "tools/io/Reason.h"

namespace menutool {

std::string Reason(const tolvex::platform::Status& status) {
  return tolvex::platform::ErrnoText(tolvex::platform::ErrnoFromStatus(status));
}

std::string SizeText(uint64_t bytes) {
  if (bytes >= (uint64_t{1} << 30)) return std::to_string(bytes >> 30) + " GB";
  if (bytes >= (uint64_t{1} << 20)) return std::to_string(bytes >> 20) + " MB";
  return std::to_string(bytes) + " bytes";
}

}  // namespace menutool
