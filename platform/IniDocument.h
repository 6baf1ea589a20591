// The parsed view of a profile file: its lines, sections and entries as the Windows profile
// functions see them, each with its position in the file's units so that an edit can change
// one line and keep every other byte. Built once per call from the file just read; never
// shared between threads.
#ifndef TOLVEX_PLATFORM_INIDOCUMENT_H
#define TOLVEX_PLATFORM_INIDOCUMENT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/TextEncoding.h"

namespace tolvex::platform {

// A half-open range of units.
struct UnitRange {
  size_t begin = 0;
  size_t end = 0;
  size_t size() const { return end - begin; }
  bool empty() const { return begin == end; }
};

// One line with text left after trimming. Lines that trim to nothing are not kept.
struct IniLine {
  UnitRange whole;    // from the line's first unit to the end of its own line break
  UnitRange content;  // trimmed of blanks at both ends
  bool hasBreak = false;
  bool isHeader = false;
  bool hasValue = false;  // an entry with '='; false for valueless entries and headers
  bool dropped = false;   // an empty-named entry right after another one: invisible
  UnitRange name;         // the section or entry name, cut at a NUL
  UnitRange valueStart;   // entries with '=': from the first unit after the leading blanks
                          // to the end of the content (what an edit replaces)
  UnitRange value;        // the value as read: valueStart cut at a NUL
};

struct IniSection {
  bool nameless = false;  // the entries before the first header
  UnitRange name;
  size_t firstLine = 0;  // the header line (or the first entry of the nameless section)
  size_t endLine = 0;    // one past the last line of the section
};

// Blanks, as the profile functions trim them: 0x09 to 0x0D, Ctrl-Z and space.
inline bool IsBlank(char16_t unit) {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x1A || unit == 0x20;
}

// Both ends of `text` trimmed of blanks.
std::string_view TrimBlanks(std::string_view text);

// Reads the line of `units` from `begin` up to `contentEnd` (where its line break, if any,
// starts): fills `line`'s content, kind, name and value, all as ranges of `units`, and leaves
// its other fields alone. False when the line trims to nothing, which the reading rules drop.
bool ParseLine(std::u16string_view units, size_t begin, size_t contentEnd, IniLine* line);

class IniDocument {
 public:
  explicit IniDocument(std::string_view bytes);

  const FileText& text() const { return m_text; }
  const std::vector<IniLine>& lines() const { return m_lines; }
  const std::vector<IniSection>& sections() const { return m_sections; }

  std::u16string_view Units(UnitRange range) const {
    return std::u16string_view(m_text.units).substr(range.begin, range.size());
  }
  // `range` as the caller's code page 1252 text.
  std::string Ansi(UnitRange range) const { return AnsiFromUnits(Units(range), m_text.encoding); }
  // The caller's text as units of this file.
  std::u16string ToUnits(std::string_view ansi) const {
    return UnitsFromAnsi(ansi, m_text.encoding);
  }

  // Whether `range` spells `name` apart from the case of ASCII letters.
  bool NameEquals(UnitRange range, std::u16string_view name) const;

  // The first section called `name` (apart from ASCII case), or -1.
  int FindSection(std::u16string_view name) const;
  // The first visible entry called `name` in `section`, or -1.
  int FindEntry(const IniSection& section, std::u16string_view name) const;

 private:
  void AddLine(size_t begin, size_t contentEnd, size_t end, bool hasBreak);

  FileText m_text;
  std::vector<IniLine> m_lines;
  std::vector<IniSection> m_sections;
  bool m_previousNameEmpty = false;  // for dropping repeated empty names
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INIDOCUMENT_H
