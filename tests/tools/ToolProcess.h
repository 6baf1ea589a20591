// Starting the built menutemplate binary as a child process, per system (posix/, win32/): its
// standard output and error go to files, which RunTool reads back.
#ifndef TOLVEX_TESTS_TOOLS_TOOLPROCESS_H
#define TOLVEX_TESTS_TOOLS_TOOLPROCESS_H

#include "ToolRunner.h"

#include <string>
#include <vector>

namespace tolvex::test {

// What RunTool promises (ToolRunner.h), with the output captured in the files `out` and `err`.
// Returns the exit status, or -1 when the tool did not exit normally.
int RunToolProcess(const std::vector<std::string>& args, const std::string& cwd,
                   const std::string& out, const std::string& err, unsigned timeLimit);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_TOOLS_TOOLPROCESS_H
