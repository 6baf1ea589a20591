// The reference model: one linear parse of the whole file (any run of CR and LF ends a line,
// each line read by the platform's line rules, entries before the first header form a nameless
// section); reads are linear scans handed to the buffer rules; every edit is one splice of the
// original bytes, new text encoded in the file's own encoding, so everything outside the splice
// stays byte for byte.
#include "reference/IniModel.h"

#include "platform/NameIndex.h"
#include "platform/ResultBuffer.h"

namespace tolvex::reference {

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
  if (!platform::ParseLine(m_text.units, begin, contentEnd, &line)) return;

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
  return platform::NameIndex::SameName(Units(range), name);
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

namespace {

const std::u16string_view kCrLf = u"\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && platform::IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  return text;
}

// `bytes` with the units `range` replaced by `insert` (given as units).
std::string Splice(const IniDocument& document, std::string_view bytes, UnitRange range,
                   std::u16string_view insert) {
  const FileText& text = document.text();
  size_t from = text.ByteOffset(range.begin), to = text.ByteOffset(range.end);
  std::string encoded = platform::EncodeUnits(insert, text.encoding);
  std::string out;
  out.reserve(bytes.size() - (to - from) + encoded.size());
  out.append(bytes.substr(0, from));
  out.append(encoded);
  out.append(bytes.substr(to));
  return out;
}

// Inserts `newLines` (each ending in CRLF) after line `lineIndex`, first giving that line a
// break when it is the last of the file and has none.
std::string InsertAfterLine(const IniDocument& document, std::string_view bytes,
                            size_t lineIndex, std::u16string newLines) {
  const IniLine& line = document.lines()[lineIndex];
  if (!line.hasBreak) newLines.insert(0, kCrLf);
  return Splice(document, bytes, {line.whole.end, line.whole.end}, newLines);
}

}  // namespace

std::optional<std::string> SetValue(const IniDocument& document, std::string_view bytes,
                                    std::string_view app, std::string_view key,
                                    std::string_view value) {
  const std::u16string newValue = document.ToUnits(WithoutLeadingBlanks(value));
  int found = document.FindSection(document.ToUnits(platform::TrimBlanks(app)));
  if (found < 0) {
    std::u16string lines = u"[" + document.ToUnits(WithoutLeadingBlanks(app)) + u"]";
    lines += kCrLf;
    lines += document.ToUnits(WithoutLeadingBlanks(key)) + u"=" + newValue;
    lines += kCrLf;
    // A file whose last line has no break gets one first, so the header starts a line.
    const std::u16string& units = document.text().units;
    if (!units.empty() && units.back() != '\r' && units.back() != '\n') lines.insert(0, kCrLf);
    return Splice(document, bytes, {units.size(), units.size()}, lines);
  }

  const IniSection& section = document.sections()[found];
  int entry = document.FindEntry(section, document.ToUnits(platform::TrimBlanks(key)));
  if (entry < 0) {
    std::u16string line = document.ToUnits(WithoutLeadingBlanks(key)) + u"=" + newValue;
    line += kCrLf;
    return InsertAfterLine(document, bytes, section.endLine - 1, line);
  }

  const IniLine& line = document.lines()[entry];
  if (!line.hasValue)
    return Splice(document, bytes, {line.content.end, line.content.end}, u"=" + newValue);
  if (document.Units(line.value) == newValue) return std::nullopt;
  // Everything from the value's first character to the end of the line's text goes,
  // text after a NUL included; spacing before the value and the line break stay.
  return Splice(document, bytes, line.valueStart, newValue);
}

std::optional<std::string> RemoveKey(const IniDocument& document, std::string_view bytes,
                                     std::string_view app, std::string_view key) {
  const std::u16string appUnits = document.ToUnits(app), keyUnits = document.ToUnits(key);
  for (const IniSection& section : document.sections()) {
    if (!document.NameEquals(section.name, appUnits)) continue;
    int entry = document.FindEntry(section, keyUnits);
    if (entry >= 0) return Splice(document, bytes, document.lines()[entry].whole, u"");
  }
  return std::nullopt;
}

std::optional<std::string> RemoveSection(const IniDocument& document, std::string_view bytes,
                                         std::string_view app) {
  int found = document.FindSection(document.ToUnits(app));
  if (found < 0) return std::nullopt;
  const IniSection& section = document.sections()[found];
  const auto& lines = document.lines();
  UnitRange range{lines[section.firstLine].whole.begin, lines[section.endLine - 1].whole.end};
  // Blank lines up to the next header go with the section.
  range.end = section.endLine < lines.size() ? lines[section.endLine].whole.begin
                                             : document.text().units.size();
  return Splice(document, bytes, range, u"");
}

std::optional<std::string> EditProfileText(const IniDocument& document, std::string_view bytes,
                                           const char* app, const char* key, const char* value) {
  if (!key) return RemoveSection(document, bytes, app);
  if (!value) return RemoveKey(document, bytes, app, key);
  return SetValue(document, bytes, app, key, value);
}

uint32_t ReadValue(const IniDocument& document, const char* app, const char* key,
                   const char* defaultText, char* buffer, uint32_t size) {
  if (size == 0) return 0;
  int section = document.FindSection(document.ToUnits(platform::TrimBlanks(app)));
  if (section >= 0) {
    int entry =
        document.FindEntry(document.sections()[section], document.ToUnits(platform::TrimBlanks(key)));
    if (entry >= 0 && document.lines()[entry].hasValue)
      return platform::CopyValueText(document.Ansi(document.lines()[entry].value), buffer, size);
  }
  return platform::CopyValueText(platform::TrimDefaultSpaces(defaultText ? defaultText : ""), buffer, size);
}

namespace {

uint32_t ListSectionNames(const IniDocument& document, char* buffer, uint32_t size) {
  std::string list;
  for (const IniSection& section : document.sections()) {
    if (section.name.empty()) continue;
    list += document.Ansi(section.name);
    list.push_back('\0');
  }
  return platform::CopyNameList(list, buffer, size);
}

uint32_t ListKeyNames(const IniDocument& document, const char* app, const char* defaultText,
                      char* buffer, uint32_t size) {
  if (size == 0) return 0;
  std::string list;
  bool firstEmpty = false;
  int found = size > 2 ? document.FindSection(document.ToUnits(app)) : -1;
  if (found >= 0) {
    const IniSection& section = document.sections()[found];
    for (size_t i = section.firstLine; i < section.endLine; ++i) {
      const IniLine& line = document.lines()[i];
      if (line.isHeader || line.dropped || !line.hasValue) continue;
      if (!line.name.empty() && document.text().units[line.name.begin] == ';') continue;
      if (list.empty() && line.name.empty()) firstEmpty = true;
      list += document.Ansi(line.name);
      list.push_back('\0');
    }
  }
  if (list.empty() || firstEmpty)
    return platform::CopyValueText(defaultText ? defaultText : "", buffer, size);
  return platform::CopyNameList(list, buffer, size);
}

}  // namespace

uint32_t ReadProfileText(const IniDocument& document, const char* app, const char* key,
                         const char* defaultText, char* buffer, uint32_t size) {
  if (!app) return ListSectionNames(document, buffer, size);
  if (!key) return ListKeyNames(document, app, defaultText, buffer, size);
  return ReadValue(document, app, key, defaultText, buffer, size);
}

}  // namespace tolvex::reference
