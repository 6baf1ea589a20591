// The reference model of a profile file for the differential tests and the fuzzer: the file
// parsed whole into lines and sections, read by linear scans and edited by splicing its bytes,
// as plainly as the reading rules allow. The library itself uses the indexed form
// (platform/IndexedIni.h); both must always give the same reads and the same bytes.
// OS-unaware; a document is never shared between threads.
#ifndef TOLVEX_TESTS_REFERENCE_INIMODEL_H
#define TOLVEX_TESTS_REFERENCE_INIMODEL_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IniLine.h"
#include "platform/TextEncoding.h"

namespace tolvex::reference {

using platform::FileText;
using platform::IniLine;
using platform::UnitRange;

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
  // `range` as the caller's code page 1252 text, and the caller's text as units of this file.
  std::string Ansi(UnitRange range) const {
    return platform::AnsiFromUnits(Units(range), m_text.encoding);
  }
  std::u16string ToUnits(std::string_view ansi) const {
    return platform::UnitsFromAnsi(ansi, m_text.encoding);
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

// The changes of WritePrivateProfileStringA as edits of `bytes`, the document's file: each
// returns the new bytes, in which only the line concerned changed (or one line was added), or
// nothing when the file must stay as it is.
// Sets `key` of section `app` to `value`. Names are matched trimmed, ignoring ASCII case; the
// value loses its leading blanks. A new key goes after the last line of the section, a new
// section at the end of the file, spelled as given minus leading blanks, with CRLF.
std::optional<std::string> SetValue(const IniDocument& document, std::string_view bytes,
                                    std::string_view app, std::string_view key,
                                    std::string_view value);
// Removes the first key called `key` (untrimmed, ASCII case ignored) from the sections called
// `app`, looking through each of them in file order.
std::optional<std::string> RemoveKey(const IniDocument& document, std::string_view bytes,
                                     std::string_view app, std::string_view key);
// Removes the first section called `app` (untrimmed, ASCII case ignored) with all its lines.
std::optional<std::string> RemoveSection(const IniDocument& document, std::string_view bytes,
                                         std::string_view app);
// The change for a non-NULL `app`: removes the section when `key` is NULL, the key when
// `value` is NULL, else sets the value.
std::optional<std::string> EditProfileText(const IniDocument& document, std::string_view bytes,
                                           const char* app, const char* key, const char* value);

// The reads of GetPrivateProfileStringA, filling the caller's buffer by the Windows rules.
// The value of `key` in section `app` (both trimmed of blanks, ASCII case ignored), or the
// default when the section, the key or its value is missing. `defaultText` may be NULL.
uint32_t ReadValue(const IniDocument& document, const char* app, const char* key,
                   const char* defaultText, char* buffer, uint32_t size);
// The section list when `app` is NULL; when `key` is NULL the names of the keys of section
// `app` (matched untrimmed) that have a value and do not start with ';', or the default when
// there are none to give; else one value.
uint32_t ReadProfileText(const IniDocument& document, const char* app, const char* key,
                         const char* defaultText, char* buffer, uint32_t size);

}  // namespace tolvex::reference

#endif  // TOLVEX_TESTS_REFERENCE_INIMODEL_H
