// The outside programs authoring runs (ffmpeg, ffprobe, spumux, dvdauthor, genisoimage): finding
// them on PATH, with the Debian package to name when one is missing, and running one with its
// standard streams tied to files or read line by line. Runs each program to its end on the
// caller's thread; no shell is involved, so file names need no quoting.
#ifndef TOLVEX_TOOLS_AUTHOR_PROGRAMS_H
#define TOLVEX_TOOLS_AUTHOR_PROGRAMS_H

#include <functional>
#include <string>
#include <vector>

namespace menutool::author {

// The full path of `program` on PATH; throws ToolError "<program> not found: install the Debian
// package <package>" when there is none.
std::string RequireProgram(const std::string& program, const std::string& package);

struct Invocation {
  explicit Invocation(std::vector<std::string> args) : argv(std::move(args)) {}

  std::vector<std::string> argv;  // argv[0] is the program's path
  std::string folder;             // working folder; empty: the current one
  std::string input;              // file for standard input; empty: /dev/null
  std::string output;             // file for standard output; empty: read through `onLine`
  std::string log;                // file that standard error goes to (appended); empty: kept
  std::vector<std::string> environment;  // extra NAME=value entries
  std::function<void(const std::string&)> onLine;  // each line of standard output
};

struct Outcome {
  int status = -1;     // exit status, -1 when the program did not exit normally
  std::string errors;  // standard error, when no log file takes it (at most the last 64 KiB)
};

// Runs the program and waits for it. Throws ToolError when it cannot be started.
Outcome RunProgram(const Invocation& invocation);

// `path` as ffmpeg and ffprobe must be given a file the user named: a "file:" URL of its
// absolute path, so that no name is read as another protocol ("concat:", "http:"), as an option
// ("-x") or relative to another folder.
std::string FileArgument(const std::string& path);

// The last non-empty line of `text` (for a one-line message about a failed program).
std::string LastLine(const std::string& text);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_PROGRAMS_H
