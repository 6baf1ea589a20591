// The tool's own output files, written by the library's one atomic replace (TolvexReplaceFile
// of libTolvexProfile); here only its reasons become the tool's messages.
#include "tools/io/OutputFile.h"

#include <tolvex/Profile.h>

#include <cerrno>
#include <cstring>

#include "tools/cli/ToolError.h"

namespace menutool {

void WriteOutputFile(const std::string& path, std::string_view bytes) {
  const int error = TolvexReplaceFile(path.c_str(), bytes.data(), bytes.size());
  if (error == 0) return;
  if (error == EINVAL && !path.empty()) throw ToolError(path, "not a regular file; not replaced");
  if (error == EISDIR) throw ToolError(path, "a folder; not replaced");
  throw ToolError(path, std::string("cannot write: ") + std::strerror(error));
}

}  // namespace menutool
