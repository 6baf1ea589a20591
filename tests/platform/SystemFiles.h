// What the files of each system look like to the shared tests of writes (SystemFilesTest.cpp),
// given by the system's own SystemFilesTest.cpp: the marks a replacing write must carry over
// and the special files a reader or writer must refuse.
#ifndef TOLVEX_TESTS_PLATFORM_SYSTEMFILES_H
#define TOLVEX_TESTS_PLATFORM_SYSTEMFILES_H

#include <string>
#include <vector>

namespace tolvex::test {

// Gives `path` marks a write must keep (mode bits on POSIX, hidden and archive on Windows).
void MarkToKeep(const std::string& path);
bool StillMarked(const std::string& path);
// A pipe (a FIFO in `folder` on POSIX, a named pipe left open for the rest of the run on
// Windows), then the system's devices.
std::vector<std::string> SpecialFiles(const std::string& folder);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_PLATFORM_SYSTEMFILES_H
