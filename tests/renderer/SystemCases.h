// What the renderer tests need of each system (<system>/SystemCases.cpp): how arrows are drawn,
// a call run where a hang or a crash cannot stop the suite, files that are not regular files,
// and another name of one file.
#ifndef TOLVEX_TESTS_RENDERER_SYSTEMCASES_H
#define TOLVEX_TESTS_RENDERER_SYSTEMCASES_H

#include <functional>
#include <string>
#include <vector>

#include "support/TempDir.h"

namespace tolvex::test {

// Whether the system's renderer anti-aliases the arrows of the previous and next buttons: cairo
// does; with GDI+ every shape but the text is exact to the pixel.
extern const bool kArrowsAntiAliased;

// Whether RunIsolated runs its call in a child process, whose peak memory it measures and
// whose file sizes it can limit: a forked child on POSIX; on Windows, this process.
extern const bool kChildProcesses;

// What a call returned, whether it came back (no crash, no hang past the alarm), and the
// child's peak memory in kB (0 when not measured).
struct Isolated {
  bool finished = false;
  std::string output;
  long peakKb = 0;
};
// Runs `call`, in a child when kChildProcesses, with writes limited to `fileSizeLimit` bytes
// when that is not 0.
Isolated RunIsolated(const std::function<std::string()>& call, long fileSizeLimit = 0);

// Paths that are not regular files: a FIFO and a link to it, made in `dir`, and /dev/zero;
// on Windows the device NUL, as named in `dir`.
std::vector<std::string> NotRegularFiles(const TempDir& dir);
// Whether the renderers refuse those as outputs as "not a regular file": on Windows the write
// to NUL fails instead with "input/output error" (under Wine), which names no cause.
extern const bool kNotRegularOutputNamed;

// Another name in `dir` of `target` (relative to `dir`, or absolute): a symbolic link on
// POSIX; on Windows the name in upper case with backslashes.
std::string OtherSpelling(const TempDir& dir, const std::string& target);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDERER_SYSTEMCASES_H
