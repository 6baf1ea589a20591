// Writing the spumux and dvdauthor XML (see DiscXml.h).
#include "tools/author/DiscXml.h"

#include <algorithm>
#include <sstream>

namespace menutool::author {
namespace {

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

std::string Name(size_t position) { return "b" + std::to_string(position + 1); }

// The value of SPRM 8 that highlights button `number` (1-based).
std::string Highlight(size_t number) { return std::to_string(std::max<size_t>(number, 1) * 1024); }

// Commands that show page `to` (0-based) with button `number` highlighted.
std::string GoToPage(size_t to, size_t number) {
  return "g0 = " + std::to_string(to + 1) + "; g1 = " + Highlight(number) + "; jump menu " +
         std::to_string(to + 1) + ";";
}

}  // namespace

std::string SpumuxXml(const std::vector<PixelBox>& areas, const std::vector<Links>& links,
                      const std::string& highlight, const std::string& select) {
  std::ostringstream xml;
  xml << "<subpictures>\n <stream>\n  <spu force=\"yes\" start=\"00:00:00.00\" highlight=\""
      << Escaped(highlight) << "\" select=\"" << Escaped(select) << "\">\n";
  for (size_t i = 0; i < areas.size(); ++i) {
    // spumux's corners are the first and the last pixel of the area.
    const PixelBox& a = areas[i];
    xml << "   <button name=\"" << Name(i) << "\" x0=\"" << a.left << "\" y0=\"" << a.top
        << "\" x1=\"" << a.right - 1 << "\" y1=\"" << a.bottom - 1 << "\" up=\""
        << Name(links[i].up) << "\" down=\"" << Name(links[i].down) << "\" left=\""
        << Name(links[i].left) << "\" right=\"" << Name(links[i].right) << "\"/>\n";
  }
  xml << "  </spu>\n </stream>\n</subpictures>\n";
  return xml.str();
}

std::string DvdauthorXml(const std::vector<MenuPage>& pages,
                         const std::vector<Assignment>& assignments, Standard standard,
                         const DiscFiles& files, const std::string& dest) {
  const std::string format = standard == Standard::kNtsc ? "ntsc" : "pal";
  const size_t n = pages.size();

  // Titlesets in order of their first title; a title's number counts through them in order.
  std::vector<std::vector<size_t>> sets;
  std::vector<std::string> setKeys;
  for (size_t v = 0; v < files.titles.size(); ++v) {
    const auto known = std::find(setKeys.begin(), setKeys.end(), files.titles[v].set);
    if (known == setKeys.end()) {
      setKeys.push_back(files.titles[v].set);
      sets.push_back({v});
    } else {
      sets[static_cast<size_t>(known - setKeys.begin())].push_back(v);
    }
  }
  std::vector<size_t> titleNumber(files.titles.size());
  size_t counted = 0;
  for (const std::vector<size_t>& set : sets)
    for (size_t v : set) titleNumber[v] = ++counted;

  std::ostringstream xml;
  xml << "<dvdauthor dest=\"" << Escaped(dest) << "\">\n"
      << " <vmgm>\n  <fpc>g0 = 1; g1 = 1024; jump vmgm menu 1;</fpc>\n"
      << "  <menus>\n   <video format=\"" << format << "\" aspect=\"4:3\"/>\n";
  for (size_t p = 0; p < n; ++p) {
    const MenuPage& page = pages[p];
    xml << "   <pgc" << (p == 0 ? " entry=\"title\"" : "") << ">\n    <pre>";
    if (p == 0)
      for (size_t other = 1; other < n; ++other)
        xml << "if (g0 == " << other + 1 << ") jump menu " << other + 1 << "; ";
    xml << "button = g1;</pre>\n    <vob file=\"" << Escaped(files.menus[p])
        << "\" pause=\"inf\"/>\n";
    for (size_t b = 0; b < page.buttons.size(); ++b) {
      std::string command;
      switch (page.buttons[b].kind) {
        case ButtonKind::kNumbered: {
          // The numbered buttons come first, so b is also the position among them.
          size_t title = 0;
          for (const Assignment& a : assignments)
            if (a.page == p && a.button == b) title = titleNumber.at(a.video);
          command = "g0 = " + std::to_string(p + 1) + "; g1 = " + Highlight(b + 1) +
                    "; jump title " + std::to_string(title) + ";";
          break;
        }
        case ButtonKind::kPrevious: {
          const size_t to = (p + n - 1) % n;
          command = GoToPage(to, pages[to].NumberOf(ButtonKind::kPrevious));
          break;
        }
        case ButtonKind::kNext: {
          const size_t to = (p + 1) % n;
          command = GoToPage(to, pages[to].NumberOf(ButtonKind::kNext));
          break;
        }
      }
      xml << "    <button name=\"" << Name(b) << "\">{ " << command << " }</button>\n";
    }
    xml << "   </pgc>\n";
  }
  xml << "  </menus>\n </vmgm>\n";
  for (const std::vector<size_t>& set : sets) {
    const bool wide = files.titles[set.front()].aspect == Aspect::k16x9;
    // A titleset's own root menu is what the menu key opens during its titles: the pages.
    xml << " <titleset>\n  <menus>\n   <pgc entry=\"root\">\n"
        << "    <pre>jump vmgm menu 1;</pre>\n   </pgc>\n  </menus>\n"
        << "  <titles>\n   <video format=\"" << format << "\" aspect=\""
        << (wide ? "16:9\" widescreen=\"nopanscan" : "4:3") << "\"/>\n";
    for (size_t v : set)
      xml << "   <pgc>\n    <vob file=\"" << Escaped(files.titles[v].file)
          << "\"/>\n    <post>call vmgm menu 1;</post>\n   </pgc>\n";
    xml << "  </titles>\n </titleset>\n";
  }
  xml << "</dvdauthor>\n";
  return xml.str();
}

}  // namespace menutool::author
