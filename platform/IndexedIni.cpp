// The indexed form of a profile file: built in one pass over the file's units, reading each
// line by the rules of IniLine.h, and changed one line at a time by the same rules.
#include "platform/IndexedIni.h"

#include <algorithm>

#include "platform/ResultBuffer.h"

namespace tolvex::platform {
namespace {

const std::u16string_view kCrLf = u"\r\n";

std::u16string_view View(const std::u16string& units, UnitRange range) {
  return std::u16string_view(units).substr(range.begin, range.size());
}

bool HasLineBreak(std::u16string_view units) {
  for (char16_t unit : units)
    if (unit == '\r' || unit == '\n') return true;
  return false;
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  return text;
}

UnitRange Shifted(UnitRange range, size_t by) { return {range.begin - by, range.end - by}; }

}  // namespace

IndexedIni::IndexedIni(std::string_view bytes) {
  const FileText text = DecodeFile(bytes);
  const std::u16string& units = text.units;
  m_encoding = text.encoding;
  m_units = units.size();
  m_mark = std::string(bytes.substr(0, text.markBytes));
  m_tail = std::string(bytes.substr(std::min(bytes.size(), text.ByteOffset(units.size()))));

  // A line with content is kept once the next one is found, so that it can take the blank
  // lines between them.
  struct Pending {
    size_t begin = 0, breakAt = 0;
    IniLine parse;
  };
  Pending pending;
  bool anyLine = false, previousNameEmpty = false;
  auto keep = [&](size_t upTo) {
    Line line;
    line.units = units.substr(pending.begin, upTo - pending.begin);
    line.breakAt = pending.breakAt;
    line.parse = pending.parse;
    if (line.parse.isHeader) {
      m_sections.emplace_back();
      previousNameEmpty = false;
    } else {
      if (m_sections.empty()) m_sections.emplace_back();  // the nameless section
      const bool nameEmpty = line.parse.name.empty();
      line.parse.dropped = nameEmpty && previousNameEmpty;
      if (!line.parse.dropped) previousNameEmpty = nameEmpty;
    }
    m_memory += sizeof(Line) + line.units.capacity() * sizeof(char16_t);
    m_sections.back().lines.push_back(std::move(line));
  };
  for (size_t begin = 0; begin < units.size();) {
    const size_t breakAt = LineBreakAt(units, begin);
    const size_t end = LineEndAfter(units, breakAt);
    IniLine parse;
    if (ParseLine(units, begin, breakAt, &parse)) {
      if (anyLine) {
        keep(begin);
      } else {
        m_prefix = units.substr(0, begin);
      }
      anyLine = true;
      parse.whole = {0, end - begin};
      parse.hasBreak = end > breakAt;
      parse.content = Shifted(parse.content, begin);
      parse.name = Shifted(parse.name, begin);
      if (parse.hasValue) {
        parse.valueStart = Shifted(parse.valueStart, begin);
        parse.value = Shifted(parse.value, begin);
      }
      pending = Pending{begin, breakAt - begin, parse};
    }
    begin = end;
  }
  if (anyLine) {
    keep(units.size());
  } else {
    m_prefix = units;
  }
  for (uint32_t i = 0; i < m_sections.size(); ++i) IndexSection(i);
  m_memory += sizeof(*this) + m_prefix.size() * 2 + m_sections.capacity() * sizeof(Section) +
              m_firstSection.MemoryUse();
}

std::u16string_view IndexedIni::EntryNames::operator()(uint32_t line) const {
  const Line& entry = section->lines[line];
  return View(entry.units, entry.parse.name);
}

std::u16string_view IndexedIni::SectionNames::operator()(uint32_t section) const {
  return ini->NameOf(ini->m_sections[section]);
}

void IndexedIni::IndexSection(uint32_t index) {
  Section& section = m_sections[index];
  m_firstSection.Insert(NameOf(section), index, SectionNames{this});
  for (uint32_t i = 0; i < section.lines.size(); ++i) {
    const Line& line = section.lines[i];
    if (line.parse.isHeader || line.parse.dropped) continue;
    section.entries.Insert(View(line.units, line.parse.name), i, EntryNames{&section});
  }
  m_memory += section.entries.MemoryUse();
}

std::u16string_view IndexedIni::NameUnits(std::string_view ansi) const {
  if (m_encoding == FileEncoding::kAnsi && ansi.size() <= m_shortName.size()) {
    // The common case, without the bookkeeping of a string: ANSI units are the bytes.
    char16_t* to = m_shortName.data();
    for (char byte : ansi) *to++ = static_cast<unsigned char>(byte);
    return std::u16string_view(m_shortName.data(), ansi.size());
  }
  m_nameUnits.clear();
  AppendUnitsFromAnsi(ansi, m_encoding, &m_nameUnits);
  return m_nameUnits;
}

std::u16string_view IndexedIni::NameOf(const Section& section) const {
  const Line& first = section.lines.front();
  return first.parse.isHeader ? View(first.units, first.parse.name) : std::u16string_view();
}

int IndexedIni::FindSection(std::u16string_view name) const {
  return static_cast<int>(m_firstSection.Find(name, SectionNames{this}));
}

int IndexedIni::FindTrimmedSection(const char* app) const {
  const std::string_view name(app);
  for (const RecentSection& recent : m_recent)
    if (recent.index >= 0 && std::string_view(recent.app) == name) return recent.index;
  const int found = FindSection(NameUnits(TrimBlanks(app)));
  if (found >= 0) {
    std::swap(m_recent[0], m_recent[1]);
    m_recent[0].app = app;
    m_recent[0].index = found;
  }
  return found;
}

int64_t IndexedIni::FindEntry(const Section& section, const char* key) const {
  return section.entries.Find(NameUnits(TrimBlanks(key)), EntryNames{&section});
}

std::string IndexedIni::Bytes() const {
  std::string out;
  WriteBytes([&](std::string_view piece) {
    out += piece;
    return Status::Ok();
  });
  return out;
}

Status IndexedIni::WriteBytes(const ByteSink& write) const {
  const bool wide = m_encoding == FileEncoding::kUtf16Le || m_encoding == FileEncoding::kUtf16Be;
  const bool little = m_encoding == FileEncoding::kUtf16Le;
  const size_t unitBytes = wide ? 2 : 1;
  // One buffer, filled and handed on: the file is never held whole, and a small file takes
  // about its size.
  std::string buffer(std::max<size_t>(std::min(ByteSize(), kPieceBytes), 2), '\0');
  char* const start = buffer.data();
  char* const end = start + buffer.size();
  char* to = start;
  Status status = Status::Ok();
  auto flush = [&] {
    if (to != start && status.ok()) status = write(std::string_view(start, to - start));
    to = start;
  };
  auto putBytes = [&](std::string_view bytes) {
    for (char byte : bytes) {
      if (to == end) flush();
      *to++ = byte;
    }
  };
  // Units of one-byte encodings are bytes; UTF-16 units go in the file's byte order.
  auto putUnits = [&](std::u16string_view units) {
    while (!units.empty() && status.ok()) {
      const size_t room = static_cast<size_t>(end - to) / unitBytes;
      if (room == 0) {
        flush();
        continue;
      }
      const size_t count = std::min(room, units.size());
      if (!wide) {
        for (size_t i = 0; i < count; ++i) *to++ = static_cast<char>(units[i] & 0xFF);
      } else {
        for (size_t i = 0; i < count; ++i) {
          const char low = static_cast<char>(units[i] & 0xFF);
          const char high = static_cast<char>(units[i] >> 8);
          *to++ = little ? low : high;
          *to++ = little ? high : low;
        }
      }
      units.remove_prefix(count);
    }
  };
  putBytes(m_mark);
  putUnits(m_prefix);
  for (const Section& section : m_sections)
    for (const Line& line : section.lines) putUnits(line.units);
  putBytes(m_tail);
  flush();
  return status;
}

uint32_t IndexedIni::Read(const char* app, const char* key, const char* defaultText,
                          char* buffer, uint32_t size) const {
  if (!app) return ListSectionNames(buffer, size);
  if (!key) return ListKeyNames(app, defaultText, buffer, size);
  return ReadValue(app, key, defaultText, buffer, size);
}

uint32_t IndexedIni::ReadValue(const char* app, const char* key, const char* defaultText,
                               char* buffer, uint32_t size) const {
  if (size == 0) return 0;
  const int found = FindTrimmedSection(app);
  if (found >= 0) {
    const Section& section = m_sections[found];
    const int64_t entry = FindEntry(section, key);
    if (entry >= 0 && section.lines[entry].parse.hasValue) {
      const Line& line = section.lines[entry];
      m_valueText.clear();
      AppendAnsiFromUnits(View(line.units, line.parse.value), m_encoding, &m_valueText);
      return CopyValueText(m_valueText, buffer, size);
    }
  }
  return CopyValueText(TrimDefaultSpaces(defaultText ? defaultText : ""), buffer, size);
}

uint32_t IndexedIni::ListSectionNames(char* buffer, uint32_t size) const {
  std::string list;
  for (const Section& section : m_sections) {
    std::u16string_view name = NameOf(section);
    if (name.empty()) continue;
    list += AnsiFromUnits(name, m_encoding);
    list.push_back('\0');
  }
  return CopyNameList(list, buffer, size);
}

std::string IndexedIni::KeyNames(const char* app) const {
  std::string list;
  const int found = FindSection(NameUnits(app));
  if (found < 0) return list;
  for (const Line& line : m_sections[found].lines) {
    const IniLine& parse = line.parse;
    if (parse.isHeader || parse.dropped || !parse.hasValue) continue;
    if (!parse.name.empty() && line.units[parse.name.begin] == ';') continue;
    AppendAnsiFromUnits(View(line.units, parse.name), m_encoding, &list);
    list.push_back('\0');
  }
  return list;
}

uint32_t IndexedIni::ListKeyNames(const char* app, const char* defaultText, char* buffer,
                                  uint32_t size) const {
  if (size == 0) return 0;
  const std::string list = size > 2 ? KeyNames(app) : std::string();
  // The default stands in for an empty list and for one whose first name is empty.
  if (list.empty() || list.front() == '\0')
    return CopyValueText(defaultText ? defaultText : "", buffer, size);
  return CopyNameList(list, buffer, size);
}

bool IndexedIni::Write(const char* app, const char* key, const char* value) {
  if (!key) return RemoveSection(app);
  if (!value) return RemoveKey(app, key);
  m_newValue.clear();
  AppendUnitsFromAnsi(WithoutLeadingBlanks(value), m_encoding, &m_newValue);
  const std::u16string_view newValue = m_newValue;
  Outcome outcome;
  const int found = FindTrimmedSection(app);
  if (found < 0) {
    outcome = AddSection(app, key, newValue);
  } else {
    Section& section = m_sections[found];
    const int64_t entry = FindEntry(section, key);
    outcome = entry < 0 ? AddEntry(section, key, newValue)
                        : SetExisting(section.lines[entry], newValue);
  }
  if (outcome == Outcome::kReindex) Reindex();
  return outcome != Outcome::kUnchanged;
}

bool IndexedIni::RemoveKey(const char* app, const char* key) {
  // Removals match names untrimmed, and look through every section of that name in turn.
  const std::u16string appUnits = Units(app), keyUnits = Units(key);
  for (Section& section : m_sections) {
    if (!NameIndex::SameName(NameOf(section), appUnits)) continue;
    const int64_t entry = section.entries.Find(keyUnits, EntryNames{&section});
    if (entry < 0) continue;
    // The line goes with its own break; the blank lines after it stay.
    Line& line = section.lines[entry];
    line.units.erase(0, line.parse.whole.end);
    Reindex();
    return true;
  }
  return false;
}

bool IndexedIni::RemoveSection(const char* app) {
  const int found = FindSection(Units(app));
  if (found < 0) return false;
  // Its lines with the blank lines up to the next header.
  m_sections.erase(m_sections.begin() + found);
  Reindex();
  return true;
}

void IndexedIni::Reindex() { *this = IndexedIni(Bytes()); }

IndexedIni::Outcome IndexedIni::SetExisting(Line& line, std::u16string_view value) {
  if (line.parse.hasValue && View(line.units, line.parse.value) == value)
    return Outcome::kUnchanged;
  std::u16string units = line.units;
  UnitRange replaced{line.parse.content.end, line.parse.content.end};
  std::u16string insert(value);
  if (line.parse.hasValue) {
    // From the value's first character to the end of the line's text; text after a NUL goes
    // too, spacing before the value and the line break stay.
    replaced = line.parse.valueStart;
  } else {
    insert.insert(0, u"=");
  }
  units.replace(replaced.begin, replaced.size(), insert);
  const size_t grown = insert.size(), shrunk = replaced.size();
  IniLine parse = line.parse;
  const size_t breakAt = line.breakAt + grown - shrunk;
  m_memory += (units.size() - std::min(units.size(), line.units.size())) * 2;
  m_units = m_units + units.size() - line.units.size();
  line.units = std::move(units);
  // A line break in the value, or a value that turns an entry such as "[x" into a header,
  // changes the structure.
  if (HasLineBreak(value) || !ParseLine(line.units, 0, breakAt, &parse) || parse.isHeader)
    return Outcome::kReindex;
  parse.whole.end = parse.whole.end + grown - shrunk;
  line.breakAt = breakAt;
  line.parse = parse;
  return Outcome::kChanged;
}

IndexedIni::Outcome IndexedIni::AddEntry(Section& section, std::string_view key,
                                         std::u16string_view value) {
  Line line;
  const std::string_view name = WithoutLeadingBlanks(key);
  Line& last = section.lines.back();
  line.units.reserve(name.size() + 1 + value.size() + 2 + last.units.size() -
                     last.parse.whole.end);
  AppendUnitsFromAnsi(name, m_encoding, &line.units);
  line.units += u"=";
  line.units += value;
  line.breakAt = line.units.size();
  line.units += kCrLf;
  m_units += line.units.size();
  // A line break in the name or value, or a line that reads as a header, changes the
  // structure: the line is added as text all the same.
  const bool plain = !HasLineBreak(std::u16string_view(line.units).substr(0, line.breakAt)) &&
                     ParseLine(line.units, 0, line.breakAt, &line.parse) &&
                     !line.parse.isHeader;
  line.parse.whole = {0, line.units.size()};
  line.parse.hasBreak = true;

  // After the section's last line with text, before the blank lines that follow it.
  if (last.parse.whole.end < last.units.size()) {
    line.units += View(last.units, {last.parse.whole.end, last.units.size()});
    last.units.resize(last.parse.whole.end);
  }
  if (!last.parse.hasBreak) {
    last.units += kCrLf;
    m_units += kCrLf.size();
    last.parse.whole.end += 2;
    last.parse.hasBreak = true;
  }
  if (plain && line.parse.name.empty()) {
    // An empty name right after another empty name (the last visible entry) is dropped.
    for (auto it = section.lines.rbegin(); it != section.lines.rend(); ++it) {
      if (it->parse.isHeader) break;
      if (it->parse.dropped) continue;
      line.parse.dropped = it->parse.name.empty();
      break;
    }
  }
  const uint32_t index = static_cast<uint32_t>(section.lines.size());
  m_memory += sizeof(Line) + 16 + line.units.capacity() * 2;
  section.lines.push_back(std::move(line));
  if (!plain) return Outcome::kReindex;
  if (!section.lines.back().parse.dropped) {
    const Line& added = section.lines.back();
    section.entries.Insert(View(added.units, added.parse.name), index, EntryNames{&section});
  }
  return Outcome::kChanged;
}

IndexedIni::Outcome IndexedIni::AddSection(std::string_view app, std::string_view key,
                                           std::u16string_view value) {
  Line header;
  header.units = u"[" + Units(WithoutLeadingBlanks(app)) + u"]";
  Section section;
  // A section made here is being filled by a run of writes: room for them saves regrowing.
  section.lines.reserve(32);
  header.breakAt = header.units.size();
  const bool plain = !HasLineBreak(header.units) &&
                     ParseLine(header.units, 0, header.breakAt, &header.parse) &&
                     header.parse.isHeader;
  header.units += kCrLf;
  m_units += header.units.size();
  header.parse.whole = {0, header.units.size()};
  header.parse.hasBreak = true;
  section.lines.push_back(std::move(header));
  // AddEntry makes the entry line; the header has no blank lines after it to hand on.
  const Outcome entry = AddEntry(section, key, value);

  // A file whose last line has no break gets one first, so the header starts a line.
  std::u16string* last = &m_prefix;
  if (!m_sections.empty()) last = &m_sections.back().lines.back().units;
  if (!last->empty() && last->back() != '\r' && last->back() != '\n') {
    if (!m_sections.empty()) {
      Line& line = m_sections.back().lines.back();
      if (line.parse.whole.end == line.units.size()) {
        line.parse.whole.end += 2;
        line.parse.hasBreak = true;
      }
    }
    *last += kCrLf;
    m_units += kCrLf.size();
  }
  section.entries = NameIndex();
  m_sections.push_back(std::move(section));
  if (!plain || entry == Outcome::kReindex) return Outcome::kReindex;
  IndexSection(static_cast<uint32_t>(m_sections.size() - 1));
  return Outcome::kChanged;
}

}  // namespace tolvex::platform
