// Which video each numbered button of a disc plays: the videos in the order given go to the
// numbered buttons of the first page in index order, then to those of the second page, and so
// on. Pure computation; a count that does not match is a ToolError naming the buttons without a
// video or the videos left over.
#ifndef TOLVEX_TOOLS_AUTHOR_ASSIGNMENT_H
#define TOLVEX_TOOLS_AUTHOR_ASSIGNMENT_H

#include <string>
#include <vector>

namespace menutool::author {

struct PageButtons {
  std::string page;              // the template as named on the command line
  std::vector<unsigned> indexes;  // its numbered buttons' indexes, ascending
};

struct Assignment {
  size_t page;    // position in the page list
  size_t button;  // position among the page's numbered buttons
  size_t video;   // position in the video list, which is also the title number less one
};

std::vector<Assignment> AssignVideos(const std::vector<PageButtons>& pages,
                                     const std::vector<std::string>& videos);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_ASSIGNMENT_H
