// The reference model of a profile file for the differential tests and the fuzzer: the file
// parsed whole into lines and sections, read by linear scans and edited by splicing its bytes
// (IniEditor.h, IniQuery.h), written as plainly as the reading rules allow. The library itself
// uses the indexed form (platform/IndexedIni.h); both must always give the same reads and the
// same bytes. Never shared between threads.
#ifndef TOLVEX_TESTS_REFERENCE_INIDOCUMENT_H
#define TOLVEX_TESTS_REFERENCE_INIDOCUMENT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IniLine.h"
#include "platform/TextEncoding.h"

namespace tolvex::reference {

using platform::AnsiFromUnits;
using platform::FileEncoding;
using platform::FileText;
using platform::IniLine;
using platform::IsBlank;
using platform::ParseLine;
using platform::TrimBlanks;
using platform::UnitRange;
using platform::UnitsFromAnsi;

struct IniSection {
  bool nameless = false;  // the entries before the first header
  UnitRange name;
  size_t firstLine = 0;  // the header line (or the first entry of the nameless section)
  size_t endLine = 0;    // one past the last line of the section
};

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

}  // namespace tolvex::reference

#endif  // TOLVEX_TESTS_REFERENCE_INIDOCUMENT_H
