// Windows has no FIFOs in its file systems: a test asks MissingFeature(Feature::kFifos) before
// it makes one (see IdleFifo.h).
#include "support/IdleFifo.h"

#include "support/SystemFeatures.h"

#include <gtest/gtest.h>

namespace tolvex::test {

IdleFifo::IdleFifo(const std::string& path) {
  ADD_FAILURE() << path << ": " << MissingFeature(Feature::kFifos);
}

IdleFifo::~IdleFifo() = default;

}  // namespace tolvex::test
