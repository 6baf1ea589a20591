// Files the tool itself writes (the preview picture), written by the library's own replace:
// to a new file beside the target, flushed, and renamed over it, so a full disk, a size limit
// or a kill leaves the old file or the new one whole and no temporary behind. A symbolic link
// is followed (its target is written, even one not made yet); an existing target must be a
// regular file with a write permission bit, for root too, and keeps its mode.
#ifndef TOLVEX_TOOLS_OUTPUTFILE_H
#define TOLVEX_TOOLS_OUTPUTFILE_H

#include <string>
#include <string_view>

namespace menutool {

// Replaces `path` with `bytes`; throws ToolError naming `path` and why when it cannot.
void WriteOutputFile(const std::string& path, std::string_view bytes);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_OUTPUTFILE_H
