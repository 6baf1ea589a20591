// Reads a profile file the way the Windows profile functions do: any run of CR and LF ends a
// line, lines are trimmed and empty ones vanish, the last ']' closes a header, the first '='
// splits an entry, a NUL ends a name or value, and entries before the first header form a
// nameless section. One linear pass; the result is private to the calling thread.
#include "platform/IniDocument.h"

#include "platform/NameIndex.h"

namespace tolvex::platform {
namespace {

constexpr char16_t kCr = 0x0D, kLf = 0x0A, kNul = 0;

// `range` ended at its first NUL.
UnitRange CutAtNul(std::u16string_view units, UnitRange range) {
  for (size_t i = range.begin; i < range.end; ++i)
    if (units[i] == kNul) return {range.begin, i};
  return range;
}

UnitRange TrimRange(std::u16string_view units, UnitRange range) {
  while (range.begin < range.end && IsBlank(units[range.begin])) ++range.begin;
  while (range.end > range.begin && IsBlank(units[range.end - 1])) --range.end;
  return range;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

IniDocument::IniDocument(std::string_view bytes) : m_text(DecodeFile(bytes)) {
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

bool ParseLine(std::u16string_view units, size_t begin, size_t contentEnd, IniLine* line) {
  line->content = TrimRange(units, {begin, contentEnd});
  if (line->content.empty()) return false;
  const UnitRange content = line->content;
  size_t lastBracket = content.end;
  if (units[content.begin] == '[') {
    for (size_t i = content.end; i > content.begin + 1; --i) {
      if (units[i - 1] == ']') {
        lastBracket = i - 1;
        break;
      }
    }
  }
  line->isHeader = lastBracket != content.end;
  line->hasValue = false;
  line->valueStart = line->value = UnitRange{};
  if (line->isHeader) {
    line->name = CutAtNul(units, TrimRange(units, {content.begin + 1, lastBracket}));
    return true;
  }
  size_t equals = content.begin;
  while (equals < content.end && units[equals] != '=') ++equals;
  if (equals < content.end) {
    line->hasValue = true;
    line->name = CutAtNul(units, TrimRange(units, {content.begin, equals}));
    line->valueStart = TrimRange(units, {equals + 1, content.end});
    line->value = CutAtNul(units, line->valueStart);
  } else {
    line->name = CutAtNul(units, content);
  }
  return true;
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

}  // namespace tolvex::platform
