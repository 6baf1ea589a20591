// What Windows lacks of the mechanisms the tests ask for (see SystemFeatures.h).
#include "support/SystemFeatures.h"

namespace tolvex::test {

const char* MissingFeature(Feature feature) {
  switch (feature) {
    case Feature::kFifos: return "Windows has no FIFOs in its file systems";
    case Feature::kDevices: return "Windows has no device files such as /dev/zero";
    case Feature::kFileSizeLimit:
      return "Windows has no file-size limit per process (RLIMIT_FSIZE)";
    case Feature::kSymbolicLinks:
      return "symbolic links need a privilege on Windows, and Wine makes none";
  }
  return "unknown on Windows";
}

}  // namespace tolvex::test
