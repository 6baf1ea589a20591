// Edits of a profile file's text. Every edit is one splice of the original bytes: the units
// of the document map back to byte offsets, and new text is encoded in the file's own
// encoding, so everything outside the splice stays byte for byte. Linear in the file size.
#include "reference/IniEditor.h"

namespace tolvex::reference {
namespace {

using platform::EncodeUnits;

const std::u16string_view kCrLf = u"\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  return text;
}

// `bytes` with the units `range` replaced by `insert` (given as units).
std::string Splice(const IniDocument& document, std::string_view bytes, UnitRange range,
                   std::u16string_view insert) {
  const FileText& text = document.text();
  size_t from = text.ByteOffset(range.begin), to = text.ByteOffset(range.end);
  std::string encoded = EncodeUnits(insert, text.encoding);
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
  int found = document.FindSection(document.ToUnits(TrimBlanks(app)));
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
  int entry = document.FindEntry(section, document.ToUnits(TrimBlanks(key)));
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

}  // namespace tolvex::reference
