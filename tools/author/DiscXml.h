// The two XML files that spumux and dvdauthor take, written as text the user can read and
// adjust: one spumux file per menu page (its buttons' highlight areas and arrow links), and
// the dvdauthor file of the whole disc (the pages as menus of the video manager, the videos as
// titles in titlesets by their picture and sound, and the button and end-of-video commands that
// tie them together).
#ifndef TOLVEX_TOOLS_AUTHOR_DISCXML_H
#define TOLVEX_TOOLS_AUTHOR_DISCXML_H

#include "tools/preview/MaskAreas.h"
#include "tools/author/Assignment.h"
#include "tools/author/MenuPage.h"
#include "tools/author/VideoPlan.h"

#include <string>
#include <vector>

namespace menutool::author {

// spumux's description of a page: buttons "b1".."bN" in page order, highlighted over `areas`
// (see ButtonAreas.h) with the pictures `highlight` and `select`, with arrow `links`.
std::string SpumuxXml(const std::vector<PixelBox>& areas, const std::vector<Links>& links,
                      const std::string& highlight, const std::string& select);

struct TitleFile {
  std::string file;  // the video, DVD MPEG-2
  Aspect aspect;
  std::string set;   // titles with the same TitleSetKey share a titleset
};

struct DiscFiles {
  std::vector<std::string> menus;  // the menu video with subpictures of each page
  std::vector<TitleFile> titles;   // the video of each button, in video order
};

// dvdauthor's description of the disc, writing into `dest`. A titleset has one aspect (and one
// set of picture and sound attributes) for all its titles, so the titles go into titlesets by
// TitleFile::set, in order of first appearance, and the pages are menus of the video manager,
// the one domain that can start a title of any titleset.
// The first play sets the page register g0 to 1 and the button register g1 to the first button
// and enters page 1, the title menu; it sends on to page g0, and every page highlights button
// g1 when it starts. A numbered button stores its page and button and plays its title, whose
// end calls the title menu back; previous and next store the page they go to. The menu key
// during a title leads to the same pages.
std::string DvdauthorXml(const std::vector<MenuPage>& pages,
                         const std::vector<Assignment>& assignments, Standard standard,
                         const DiscFiles& files, const std::string& dest);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_DISCXML_H
