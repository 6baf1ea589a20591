// The one failure type of the menutemplate tool: a message for the user and the exit status to
// leave with. Commands throw it where they give up; main() prints it as one line and exits.
// (The library itself reports through its 1/0 results; the tool turns those into messages.)
#ifndef TOLVEX_TOOLS_TOOLERROR_H
#define TOLVEX_TOOLS_TOOLERROR_H

#include <stdexcept>
#include <string>

namespace menutool {

// Exit statuses shared by every command.
enum ExitStatus : int {
  kExitOk = 0,
  kExitMissing = 1,   // `get` found no value; `check` found warnings
  kExitError = 2,     // bad input, unreadable or unwritable file; `check` found errors
};

class ToolError : public std::runtime_error {
 public:
  // `subject` is what the message is about, usually a file name as the user gave it.
  ToolError(const std::string& subject, const std::string& what, int status = kExitError)
      : std::runtime_error(subject.empty() ? what : subject + ": " + what), m_status(status) {}
  int status() const { return m_status; }

 private:
  int m_status;
};

}  // namespace menutool

#endif  // TOLVEX_TOOLS_TOOLERROR_H
