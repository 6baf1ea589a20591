// The author command where the tool does not drive the DVD toolchain (the Windows builds):
// author runs ffmpeg, spumux and dvdauthor as POSIX processes (tools/author/), so here it only
// says so, with the status of a command that cannot do its work.
#include "tools/author/AuthorOptions.h"
#include "tools/cli/ToolError.h"

namespace menutool {

const char* const kAuthorSummary =
    "not in this build: making a DVD-Video folder needs ffmpeg, spumux and dvdauthor, which "
    "the Windows builds do not drive";

int RunAuthor(const AuthorOptions&) {
  throw ToolError("author",
                  "needs the DVD toolchain (ffmpeg, spumux and dvdauthor), which the Windows "
                  "builds of menutemplate do not drive; author the pages on Linux",
                  kExitError);
}

}  // namespace menutool
