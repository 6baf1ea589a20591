// Whether the folder lock that writers of a file take is free now, asked without waiting and
// as another process would ask it; for the tests of edits that hold or release that lock.
#ifndef TOLVEX_TESTS_PLATFORM_LOCKPROBE_H
#define TOLVEX_TESTS_PLATFORM_LOCKPROBE_H

#include <string>

namespace tolvex::test {

// True when a writer elsewhere could take the lock of the folder holding `file` at once.
bool FolderLockIsFree(const std::string& file);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_LOCKPROBE_H
