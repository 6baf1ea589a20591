// The options of `menutemplate author`, as the command line gives them.
#ifndef TOLVEX_TOOLS_AUTHOR_AUTHOROPTIONS_H
#define TOLVEX_TOOLS_AUTHOR_AUTHOROPTIONS_H

#include <string>
#include <vector>

namespace menutool {

struct AuthorOptions {
  std::vector<std::string> pages;
  std::vector<std::string> videos;
  std::string out;
  std::string iso;                   // empty: no disc image
  std::vector<unsigned> highlight;   // R G B, or empty for the default
  std::vector<unsigned> select;      // R G B, or empty for the default
  std::string aspect = "auto";       // "auto", "4:3" or "16:9": of the titles
  bool dvd9 = false;                 // a dual-layer disc (8.5 GB) rather than 4.7 GB
  bool force = false;        // replace an earlier disc folder of author's, or the disc image
  bool ignoreCheck = false;  // make the disc although check finds errors in a page
};

// Builds the disc; returns the exit status or throws ToolError.
int RunAuthor(const AuthorOptions& options);

// The command's line in the help, which says what this build's author can do.
extern const char* const kAuthorSummary;

}  // namespace menutool

#endif  // TOLVEX_TOOLS_AUTHOR_AUTHOROPTIONS_H
