// POSIX systems have every mechanism the tests ask for (see SystemFeatures.h).
#include "support/SystemFeatures.h"

namespace tolvex::test {

const char* MissingFeature(Feature) { return nullptr; }

}  // namespace tolvex::test
