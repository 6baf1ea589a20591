// Assigning videos to numbered buttons (see Assignment.h).
#include "tools/author/Assignment.h"

#include "tools/page/ButtonNumber.h"
#include "tools/cli/ToolError.h"

namespace menutool::author {
namespace {

std::string Count(size_t n, const char* what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

// A button as the user numbers it, or by its library index where the layout predates the tool's
// numbering.
std::string ButtonLabel(unsigned index) {
  const std::optional<unsigned> number = ButtonNumber(index);
  return number ? std::to_string(*number) : "at library index " + std::to_string(index);
}

}  // namespace

std::vector<Assignment> AssignVideos(const std::vector<PageButtons>& pages,
                                     const std::vector<std::string>& videos) {
  std::vector<Assignment> assigned;
  std::string unassigned;  // "page2.ini buttons 3 4", page by page
  for (size_t p = 0; p < pages.size(); ++p) {
    std::string here;
    for (size_t b = 0; b < pages[p].indexes.size(); ++b) {
      if (assigned.size() < videos.size()) {
        assigned.push_back({p, b, assigned.size()});
      } else {
        here += " " + ButtonLabel(pages[p].indexes[b]);
      }
    }
    if (!here.empty())
      unassigned += (unassigned.empty() ? "" : ", ") + pages[p].page + " button" + here;
  }
  size_t buttons = 0;
  for (const PageButtons& page : pages) buttons += page.indexes.size();
  const std::string summary =
      Count(videos.size(), "video") + " for " + Count(buttons, "numbered button");
  if (!unassigned.empty()) throw ToolError("", summary + ": no video for " + unassigned);
  if (assigned.size() < videos.size()) {
    std::string over;
    for (size_t v = assigned.size(); v < videos.size(); ++v) over += " " + videos[v];
    throw ToolError("", summary + ": left over:" + over);
  }
  return assigned;
}

}  // namespace menutool::author
