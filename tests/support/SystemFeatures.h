// The mechanisms of one system that some tests are about: a test of one skips itself where
// the system has none, with the reason (GTEST_SKIP), instead of failing on it.
#ifndef TOLVEX_TESTS_SUPPORT_SYSTEMFEATURES_H
#define TOLVEX_TESTS_SUPPORT_SYSTEMFEATURES_H

namespace tolvex::test {

enum class Feature {
  kFifos,          // mkfifo and named pipes in the file system
  kDevices,        // device files such as /dev/zero
  kFileSizeLimit,  // a per-process limit on file size (RLIMIT_FSIZE)
  kSymbolicLinks,  // symbolic links any user may make
};

// Why this system has no `feature`, or nullptr when it has it.
const char* MissingFeature(Feature feature);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_SYSTEMFEATURES_H
