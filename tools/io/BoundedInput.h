// Reading a document a user hands to a command (apply's CHANGES), from a file or the standard
// input, within a size limit. A named file is looked at (os::LookAt) before it is opened and
// opened only when it is a regular file, so a FIFO, a device such as /dev/zero or a folder is
// refused at once, without waiting for a writer and without the side effects an open of a
// device may have; the read stops past the limit, whatever the file does meanwhile.
#ifndef TOLVEX_TOOLS_BOUNDEDINPUT_H
#define TOLVEX_TOOLS_BOUNDEDINPUT_H

#include <cstddef>
#include <string>

namespace menutool {

// The bytes of `name`, or of the standard input for "-". Throws ToolError(name, reason) when
// it is not a regular file, holds more than `limit` bytes or cannot be read; `what` names the
// document in the reason ("the changes").
std::string ReadBoundedInput(const std::string& name, std::size_t limit, const char* what);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_BOUNDEDINPUT_H
