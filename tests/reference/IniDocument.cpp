// The reference parse: any run of CR and LF ends a line, each line read by the platform's line
// rules, and entries before the first header form a nameless section. One linear pass.
#include "reference/IniDocument.h"

#include "platform/NameIndex.h"

namespace tolvex::reference {

using platform::NameIndex;
constexpr char16_t kCr = 0x0D, kLf = 0x0A;

IniDocument::IniDocument(std::string_view bytes) : m_text(platform::DecodeFile(bytes)) {
  const std::u16string& units = m_text.units;
  size_t begin = 0;
  while (begin < units.size()) {
    size_t breakAt = begin;
    while (breakAt < units.size() && units[breakAt] != kCr && units[breakAt] != kLf) ++breakAt;
    // A line's own break is CRLF, or one CR or LF; further breaks are lines of their own,
    // empty ones, which the reading rules drop anyway.
    size_t end = breakAt;
    if (end < units.size()) {
      end += (units[end] == kCr && end + 1 < units.size() && units[end + 1] == kLf) ? 2 : 1;
    }
    AddLine(begin, breakAt, end, end > breakAt);
    begin = end;
  }
  if (!m_sections.empty()) m_sections.back().endLine = m_lines.size();
}

void IniDocument::AddLine(size_t begin, size_t contentEnd, size_t end, bool hasBreak) {
  IniLine line;
  line.whole = {begin, end};
  line.hasBreak = hasBreak;
  if (!ParseLine(m_text.units, begin, contentEnd, &line)) return;

  const size_t index = m_lines.size();
  if (line.isHeader) {
    if (!m_sections.empty()) m_sections.back().endLine = index;
    IniSection section;
    section.name = line.name;
    section.firstLine = index;
    m_sections.push_back(section);
    m_previousNameEmpty = false;
  } else {
    if (m_sections.empty()) {
      IniSection nameless;
      nameless.nameless = true;
      nameless.firstLine = index;
      m_sections.push_back(nameless);
    }
    bool nameEmpty = line.name.empty();
    line.dropped = nameEmpty && m_previousNameEmpty;
    if (!line.dropped) m_previousNameEmpty = nameEmpty;
  }
  m_lines.push_back(line);
}

bool IniDocument::NameEquals(UnitRange range, std::u16string_view name) const {
  return NameIndex::SameName(Units(range), name);
}

int IniDocument::FindSection(std::u16string_view name) const {
  for (size_t i = 0; i < m_sections.size(); ++i)
    if (NameEquals(m_sections[i].name, name)) return static_cast<int>(i);
  return -1;
}

int IniDocument::FindEntry(const IniSection& section, std::u16string_view name) const {
  for (size_t i = section.firstLine; i < section.endLine; ++i) {
    const IniLine& line = m_lines[i];
    if (!line.isHeader && !line.dropped && NameEquals(line.name, name)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace tolvex::reference
