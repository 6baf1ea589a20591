// The indexed form of a profile file: built in one pass over the file's units, reading each
// line by the rules of IniLine.h, and changed one line at a time by the same rules. A changed
// line is written anew at the end of the buffer of changed lines; the units it leaves behind
// are reclaimed by compacting both buffers into one when they outweigh half the file.
#include "platform/IndexedIni.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/ResultBuffer.h"
#include "platform/WordLoad.h"

namespace tolvex::platform {
namespace {

template <typename Text>
bool HasLineBreak(const Text& units, size_t end) {
  for (size_t i = 0; i < end; ++i)
    if (units[i] == '\r' || units[i] == '\n') return true;
  return false;
}

bool IsLineBreak(char byte) { return byte == '\r' || byte == '\n'; }

constexpr uint64_t kEachByte = 0x0101010101010101u;

// Whether some byte of `word` is below `limit` (at most 0x80).
bool SomeByteBelow(uint64_t word, uint8_t limit) {
  return ((word - kEachByte * limit) & ~word & (kEachByte << 7)) != 0;
}

// Whether some of the first `count` bytes of `word` may be special: below 0x0E, or `also`
// (which is not 'A'). The bytes past them are taken as 'A'.
bool MayHoldSpecialByte(uint64_t word, size_t count, char also) {
  if (count < 8) word |= (kEachByte * 'A') << (8 * count);
  return SomeByteBelow(word, 0x0E) ||
         SomeByteBelow(word ^ (kEachByte * static_cast<unsigned char>(also)), 1);
}

// Whether `isSpecial` is true for a byte of `text`. It may only be true for bytes below 0x0E
// and for `also`: eight bytes at a time are screened for those first.
template <typename IsSpecial>
bool HoldsSpecialByte(std::string_view text, char also, const IsSpecial& isSpecial) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  for (size_t i = 0; i < text.size(); i += 8) {
    const size_t count = std::min<size_t>(8, text.size() - i);
    if (!MayHoldSpecialByte(LoadWord(bytes + i, count), count, also)) continue;
    for (size_t j = i; j < i + count; ++j)
      if (isSpecial(text[j])) return true;
  }
  return false;
}

// The bytes that keep a key's name from standing as it is in a line, and a value's. Objects
// rather than functions, so that the screening above is made for each.
constexpr auto kSpecialInName = [](char byte) {
  return byte == '=' || byte == '\0' || IsLineBreak(byte);
};
constexpr auto kSpecialInValue = [](char byte) { return IsLineBreak(byte); };

// For the common new entry of an ANSI file, a key and a value that the reading rules take as
// they are: the length of the key's name (trailing blanks dropped), else 0. Such a key (given
// without its leading blanks) starts with no '[', and holds no '=', NUL or line break; the
// value holds no line break. `nameScreened`: the key's name, trimmed, is known to hold none.
size_t PlainAnsiKey(std::string_view key, std::string_view value, bool nameScreened) {
  if (key.empty() || key.front() == '[') return 0;
  // Blanks after a screened name may still be line breaks.
  const bool keyScreened = nameScreened && !IsBlank(static_cast<unsigned char>(key.back()));
  if (!keyScreened && HoldsSpecialByte(key, '=', kSpecialInName)) return 0;
  if (HoldsSpecialByte(value, '\r', kSpecialInValue)) return 0;
  while (IsBlank(static_cast<unsigned char>(key.back()))) key.remove_suffix(1);
  return key.size();
}

}  // namespace

IndexedIni::IndexedIni(std::string&& bytes) : m_file(std::move(bytes)) {
  static_assert(sizeof(Line) == 16, "a line is four words");
  size_t markBytes = 0;
  m_encoding = EncodingOf(m_file, &markBytes);
  m_width = m_encoding == FileEncoding::kUtf16Le || m_encoding == FileEncoding::kUtf16Be ? 2 : 1;
  m_mark = m_file.substr(0, markBytes);
  m_units = (m_file.size() - markBytes) / m_width;
  m_tail = m_file.substr(markBytes + m_units * m_width);
  // A line with content is kept once the next one is found, so that it can take the blank
  // lines between them.
  Line pending;
  bool anyLine = false, previousNameEmpty = false;
  auto keep = [&](size_t upTo) {
    pending.size = static_cast<uint32_t>(upTo - pending.at);
    if (pending.flags & kHeader) {
      if (!m_sections.empty()) m_sections.back().lines.shrink_to_fit();
      m_sections.emplace_back();
      previousNameEmpty = false;
    } else {
      if (m_sections.empty()) m_sections.emplace_back();  // the nameless section
      const bool nameEmpty = pending.flags & kNameEmpty;
      if (nameEmpty && previousNameEmpty) {
        pending.flags |= kDropped;
      } else {
        previousNameEmpty = nameEmpty;
      }
    }
    m_sections.back().lines.push_back(pending);
  };
  OnText(std::string_view(m_file).substr(markBytes, m_units * m_width), [&](const auto& units) {
    for (size_t begin = 0; begin < m_units;) {
      const size_t breakAt = LineBreakAt(units, begin);
      const size_t end = LineEndAfter(units, breakAt);
      IniLine parse;
      if (ParseLine(units, begin, breakAt, &parse)) {
        if (anyLine) {
          keep(begin);
        } else {
          m_prefix.size = static_cast<uint32_t>(begin);
        }
        anyLine = true;
        pending.at = static_cast<uint32_t>(begin);
        pending.breakAt = static_cast<uint32_t>(breakAt - begin);
        pending.flags = static_cast<uint8_t>(
            (parse.isHeader ? kHeader : 0) | (parse.hasValue ? kHasValue : 0) |
            (!parse.isHeader && parse.name.empty() ? kNameEmpty : 0));
      }
      begin = end;
    }
    return 0;
  });
  if (anyLine) {
    keep(m_units);
    m_sections.back().lines.shrink_to_fit();
  } else {
    m_prefix.size = static_cast<uint32_t>(m_units);
  }
  m_sections.shrink_to_fit();
  for (uint32_t i = 0; i < m_sections.size(); ++i) IndexSection(i);
}

IndexedIni::LineText IndexedIni::TextOf(const Line& line) const { return TextOf(BytesOf(line)); }

IndexedIni::LineText IndexedIni::TextOf(std::string_view bytes) const {
  return LineText{reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size() / m_width,
                  m_width == 2, m_encoding == FileEncoding::kUtf16Le};
}

std::string_view IndexedIni::BytesOf(const Line& line) const {
  if (line.flags & kChanged)
    return m_changedLines.view().substr(line.at * m_width, line.size * m_width);
  return std::string_view(m_file).substr(m_mark.size() + line.at * m_width, line.size * m_width);
}

IniLine IndexedIni::ParseOf(const Line& line) const {
  IniLine parse;
  OnText(BytesOf(line),
         [&](const auto& units) { return ParseLine(units, 0, line.breakAt, &parse); });
  return parse;
}

bool IndexedIni::ParsePlain(std::string_view bytes, size_t breakAt, IniLine* parse) const {
  return OnText(bytes, [&](const auto& units) {
    return !HasLineBreak(units, breakAt) && ParseLine(units, 0, breakAt, parse);
  });
}

template <typename Name>
bool IndexedIni::NameIs(const Line& line, UnitRange range, const Name& name) const {
  return OnText(BytesOf(line), [&](const auto& units) {
    return NameIndex::SameName(units, range, name, UnitRange{0, name.size()});
  });
}

void IndexedIni::Store(std::string_view bytes, Line* line) {
  line->at = static_cast<uint32_t>(m_changedLines.size() / m_width);
  line->size = static_cast<uint32_t>(bytes.size() / m_width);
  line->flags |= kChanged;
  m_changedLines.Append(bytes);
}

void IndexedIni::AppendUnits(std::string_view ansi, std::string* out) const {
  if (m_encoding == FileEncoding::kAnsi) {
    *out += ansi;
    return;
  }
  m_wideUnits.clear();
  AppendUnitsFromAnsi(ansi, m_encoding, &m_wideUnits);
  for (char16_t unit : m_wideUnits) AppendUnit(unit, out);
}

void IndexedIni::AppendUnit(char16_t unit, std::string* out) const {
  if (m_width == 1) {
    out->push_back(static_cast<char>(unit & 0xFF));
    return;
  }
  const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
  const bool little = m_encoding == FileEncoding::kUtf16Le;
  out->push_back(little ? low : high);
  out->push_back(little ? high : low);
}

void IndexedIni::IndexSection(uint32_t index) {
  IndexHeader(index);
  Section& section = m_sections[index];
  for (uint32_t i = 0; i < section.lines.size(); ++i) {
    const Line& line = section.lines[i];
    if (!(line.flags & (kHeader | kDropped))) IndexEntry(section, i, ParseOf(line), nullptr);
  }
}

void IndexedIni::IndexHeader(uint32_t index) {
  const Line& first = m_sections[index].lines.front();
  if (!(first.flags & kHeader)) {
    // The nameless section comes first, so no section is indexed under "" before it.
    m_firstSection.Insert(NameIndex::Hash(std::u16string_view()), index,
                          [](uint32_t) { return false; });
    return;
  }
  const IniLine parse = ParseOf(first);
  const std::string_view bytes = BytesOf(first);
  const uint32_t hash = OnText(bytes, [&](const auto& units) {
    return HashOf(units, parse.name);
  });
  m_firstSection.Insert(hash, index, [&](uint32_t other) {
    const Line& line = m_sections[other].lines.front();
    if (!(line.flags & kHeader)) return parse.name.empty();
    return NameIndex::SameName(TextOf(line), ParseOf(line).name, TextOf(bytes), parse.name);
  });
}

void IndexedIni::IndexEntry(Section& section, uint32_t index, const IniLine& parse,
                            const uint32_t* knownHash) {
  const std::string_view bytes = BytesOf(section.lines[index]);
  const uint32_t hash = knownHash ? *knownHash : OnText(bytes, [&](const auto& units) {
    return HashOf(units, parse.name);
  });
  section.entries.Insert(hash, index, [&](uint32_t other) {
    const Line& line = section.lines[other];
    return NameIndex::SameName(TextOf(line), ParseOf(line).name, TextOf(bytes), parse.name);
  });
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

bool IndexedIni::IsCalled(const Section& section, std::u16string_view name) const {
  const Line& first = section.lines.front();
  if (!(first.flags & kHeader)) return name.empty();
  return NameIs(first, ParseOf(first).name, name);
}

int IndexedIni::FindSection(std::u16string_view name) const {
  return static_cast<int>(m_firstSection.Find(
      NameIndex::Hash(name), [&](uint32_t index) { return IsCalled(m_sections[index], name); }));
}

int IndexedIni::FindTrimmedSection(const char* app) const {
  for (const RecentSection& recent : m_recent)
    if (recent.index >= 0 && IsSameName(recent.app, app)) return recent.index;
  const int found = FindSection(NameUnits(TrimBlanks(app)));
  if (found >= 0) {
    std::swap(m_recent[0], m_recent[1]);
    m_recent[0].app = app;
    m_recent[0].index = found;
  }
  return found;
}

int64_t IndexedIni::FindKey(const Section& section, std::string_view key, IniLine* parse,
                            uint32_t* hash, bool* screened) const {
  if (m_encoding != FileEncoding::kAnsi) {
    if (screened) *screened = false;
    return FindEntry(section, NameUnits(key), parse, hash);
  }
  // The units of an ANSI file are the caller's bytes: looked up where they lie, and screened
  // for special bytes by the same pass that hashes them.
  const Units<false> name{reinterpret_cast<const unsigned char*>(key.data()), key.size(), false};
  if (!screened) return FindEntry(section, name, parse, hash);
  bool mayHold = false;
  *hash = NameIndex::HashBytes(name.bytes, name.count, [&](uint64_t word, size_t count) {
    mayHold |= MayHoldSpecialByte(word, count, '=');
  });
  *screened = !mayHold || !HoldsSpecialByte(key, '=', kSpecialInName);
  return FindHashed(section, name, *hash, parse);
}

template <typename Name>
int64_t IndexedIni::FindEntry(const Section& section, const Name& name, IniLine* parse,
                              uint32_t* hash) const {
  *hash = HashOf(name, UnitRange{0, name.size()});
  return FindHashed(section, name, *hash, parse);
}

template <typename Name>
int64_t IndexedIni::FindHashed(const Section& section, const Name& name, uint32_t hash,
                               IniLine* parse) const {
  return section.entries.Find(hash, [&](uint32_t index) {
    const Line& line = section.lines[index];
    *parse = ParseOf(line);
    return NameIs(line, parse->name, name);
  });
}

template <typename Visit>
bool IndexedIni::VisitBytes(const Visit& visit) const {
  if (!visit(std::string_view(m_mark))) return false;
  // Lines that lie one after the other in one buffer go as one run.
  std::string_view run = BytesOf(m_prefix);
  auto add = [&](const Line& line) {
    const std::string_view bytes = BytesOf(line);
    if (bytes.empty()) return true;
    if (run.data() + run.size() == bytes.data()) {
      run = std::string_view(run.data(), run.size() + bytes.size());
      return true;
    }
    const bool more = visit(run);
    run = bytes;
    return more;
  };
  for (const Section& section : m_sections)
    for (const Line& line : section.lines)
      if (!add(line)) return false;
  return visit(run) && visit(std::string_view(m_tail));
}

std::string IndexedIni::Bytes() const {
  std::string out;
  out.reserve(ByteSize());
  VisitBytes([&](std::string_view bytes) {
    out += bytes;
    return true;
  });
  return out;
}

Status IndexedIni::WriteBytes(const ByteSink& write) const {
  // One buffer, filled and handed on: the file is never held whole, and a small file takes
  // about its size.
  std::string buffer(std::max<size_t>(std::min(ByteSize(), kPieceBytes), 2), '\0');
  size_t filled = 0;
  Status status = Status::Ok();
  auto flush = [&] {
    if (filled != 0 && status.ok()) status = write(std::string_view(buffer.data(), filled));
    filled = 0;
    return status.ok();
  };
  VisitBytes([&](std::string_view bytes) {
    while (!bytes.empty()) {
      if (filled == buffer.size() && !flush()) return false;
      const size_t count = std::min(bytes.size(), buffer.size() - filled);
      std::copy_n(bytes.data(), count, buffer.data() + filled);
      filled += count;
      bytes.remove_prefix(count);
    }
    return true;
  });
  flush();
  return status;
}

bool IndexedIni::HasBytes(std::string_view bytes) const {
  return VisitBytes([&](std::string_view piece) {
           if (bytes.substr(0, piece.size()) != piece) return false;
           bytes.remove_prefix(piece.size());
           return true;
         }) &&
         bytes.empty();
}

size_t IndexedIni::MemoryUse() const {
  size_t memory = sizeof(*this) + m_file.capacity() + m_changedLines.capacity() +
                  m_firstSection.MemoryUse() + m_sections.capacity() * sizeof(Section) +
                  (m_nameUnits.capacity() + m_wideUnits.capacity()) * 2 + m_valueText.capacity() +
                  m_newValue.capacity() + m_lineBytes.capacity();
  for (const Section& section : m_sections)
    memory += section.lines.capacity() * sizeof(Line) + section.entries.MemoryUse();
  return memory;
}

uint32_t IndexedIni::Read(const char* app, const char* key, const char* defaultText,
                          char* buffer, uint32_t size) const {
  if (!app) return ListSectionNames(buffer, size);
  if (!key) return ListKeyNames(app, defaultText, buffer, size);
  return ReadValue(app, key, defaultText, buffer, size);
}

void IndexedIni::AppendAnsi(const Line& line, UnitRange range, std::string* out) const {
  if (m_encoding == FileEncoding::kAnsi) {
    *out += BytesOf(line).substr(range.begin, range.size());
    return;
  }
  const LineText text = TextOf(line);
  m_wideUnits.resize(range.size());
  for (size_t i = 0; i < range.size(); ++i) m_wideUnits[i] = text[range.begin + i];
  AppendAnsiFromUnits(m_wideUnits, m_encoding, out);
}

uint32_t IndexedIni::ReadValue(const char* app, const char* key, const char* defaultText,
                               char* buffer, uint32_t size) const {
  if (size == 0) return 0;
  UnitRange value;
  if (const Line* line = FindValueLine(app, key, &value)) {
    if (m_encoding == FileEncoding::kAnsi)
      return CopyValueText(BytesOf(*line).substr(value.begin, value.size()), buffer, size);
    m_valueText.clear();
    AppendAnsi(*line, value, &m_valueText);
    return CopyValueText(m_valueText, buffer, size);
  }
  return CopyValueText(TrimDefaultSpaces(defaultText ? defaultText : ""), buffer, size);
}

const IndexedIni::Line* IndexedIni::FindValueLine(const char* app, const char* key,
                                                  UnitRange* value) const {
  RecentEntry& recent = m_recentEntry;
  if (recent.section >= 0 && recent.compactions == m_compactions &&
      IsSameName(recent.app, app) && IsSameName(recent.key, key)) {
    const Line& line = m_sections[recent.section].lines[recent.entry];
    if (line.at == recent.line.at && line.breakAt == recent.line.breakAt &&
        line.flags == recent.line.flags) {
      *value = recent.value;
      return &line;
    }
  }
  const int found = FindTrimmedSection(app);
  if (found < 0) return nullptr;
  const Section& section = m_sections[found];
  IniLine parse;
  uint32_t hash;
  const int64_t entry = FindKey(section, TrimBlanks(key), &parse, &hash);
  if (entry < 0 || !parse.hasValue) return nullptr;
  const Line& line = section.lines[entry];
  recent.app = app;
  recent.key = key;
  recent.section = found;
  recent.entry = static_cast<uint32_t>(entry);
  recent.line = line;
  recent.value = parse.value;
  recent.compactions = m_compactions;
  *value = parse.value;
  return &line;
}

uint32_t IndexedIni::ListSectionNames(char* buffer, uint32_t size) const {
  std::string list;
  for (const Section& section : m_sections) {
    const Line& first = section.lines.front();
    if (!(first.flags & kHeader)) continue;
    const IniLine parse = ParseOf(first);
    if (parse.name.empty()) continue;
    AppendAnsi(first, parse.name, &list);
    list.push_back('\0');
  }
  return CopyNameList(list, buffer, size);
}

std::string IndexedIni::KeyNames(const char* app) const {
  std::string list;
  const int found = FindSection(NameUnits(app));
  if (found < 0) return list;
  for (const Line& line : m_sections[found].lines) {
    if ((line.flags & (kHeader | kDropped)) || !(line.flags & kHasValue)) continue;
    const IniLine parse = ParseOf(line);
    if (!parse.name.empty() && TextOf(line)[parse.name.begin] == ';') continue;
    AppendAnsi(line, parse.name, &list);
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
  return SetValues(app, &key, &value, 1) != 0;
}

size_t IndexedIni::SetValues(const char* app, const char* const* keys,
                             const char* const* values, size_t count) {
  // The section is looked up once for all the keys, and again only when the form is read anew.
  int found = FindTrimmedSection(app);
  size_t changed = 0;
  IniLine parse;  // made once: clearing one per key costs more than the rest of the lookup
  for (size_t i = 0; i < count; ++i) {
    // The value in the file's encoding: an ANSI file's bytes are the caller's.
    std::string_view newValue = WithoutLeadingBlanks(values[i]);
    if (m_encoding != FileEncoding::kAnsi) {
      m_newValue.clear();
      AppendUnits(newValue, &m_newValue);
      newValue = m_newValue;
    }
    // A new line starts with the key as given, without its leading blanks.
    const std::string_view lineKey = WithoutLeadingBlanks(keys[i]);
    Outcome outcome;
    if (found < 0) {
      outcome = AddSection(app, lineKey, newValue);
      // Sections are added at the end: a section of a name not found is the first of it.
      found = static_cast<int>(m_sections.size()) - 1;
    } else {
      Section& section = m_sections[found];
      uint32_t hash;
      bool screened;
      const int64_t entry = FindKey(section, TrimBlanks(lineKey), &parse, &hash, &screened);
      outcome = entry < 0 ? AddEntry(section, lineKey, newValue, &hash, screened)
                          : SetExisting(section.lines[entry], parse, newValue);
    }
    if (outcome == Outcome::kReindex) {
      Reindex();
      found = FindTrimmedSection(app);
    }
    if (outcome != Outcome::kUnchanged) ++changed;
  }
  if (changed != 0) CompactIfWasteful();
  return changed;
}

bool IndexedIni::RemoveKey(const char* app, const char* key) {
  // Removals match names untrimmed, and look through every section of that name in turn.
  const std::u16string appUnits = UnitsFromAnsi(app, m_encoding);
  const std::u16string keyUnits = UnitsFromAnsi(key, m_encoding);
  for (Section& section : m_sections) {
    if (!IsCalled(section, appUnits)) continue;
    IniLine parse;
    uint32_t hash;
    const int64_t entry = FindEntry(section, std::u16string_view(keyUnits), &parse, &hash);
    if (entry < 0) continue;
    // The line goes with its own break; the blank lines after it stay.
    Line& line = section.lines[entry];
    const uint32_t own = static_cast<uint32_t>(LineEndAfter(TextOf(line), line.breakAt));
    line.at += own;
    line.size -= own;
    m_units -= own;
    Reindex();
    return true;
  }
  return false;
}

bool IndexedIni::RemoveSection(const char* app) {
  const int found = FindSection(UnitsFromAnsi(app, m_encoding));
  if (found < 0) return false;
  // Its lines with the blank lines up to the next header.
  for (const Line& line : m_sections[found].lines) m_units -= line.size;
  m_sections.erase(m_sections.begin() + found);
  Reindex();
  return true;
}

void IndexedIni::Reindex() { *this = IndexedIni(Bytes()); }

void IndexedIni::CompactIfWasteful() {
  // In bytes, so that the test that runs after every write needs no division.
  const size_t held = m_file.size() - m_mark.size() - m_tail.size() + m_changedLines.size();
  if (held - m_units * m_width <= (m_units / 2 + 2048) * m_width) return;
  std::string file;
  file.reserve(ByteSize());
  file += m_mark;
  auto move = [&](Line& line) {
    const std::string_view bytes = BytesOf(line);
    line.at = static_cast<uint32_t>((file.size() - m_mark.size()) / m_width);
    line.flags &= ~kChanged;
    file += bytes;
  };
  move(m_prefix);
  for (Section& section : m_sections)
    for (Line& line : section.lines) move(line);
  file += m_tail;
  m_file.swap(file);
  m_changedLines.Release();
  ++m_compactions;
}

IndexedIni::Outcome IndexedIni::SetExisting(Line& line, const IniLine& parse,
                                            std::string_view value) {
  const size_t width = m_width;
  const std::string_view old = BytesOf(line);
  if (parse.hasValue &&
      old.substr(parse.value.begin * width, parse.value.size() * width) == value)
    return Outcome::kUnchanged;
  std::string& bytes = m_lineBytes;
  bytes.clear();
  UnitRange replaced{parse.content.end, parse.content.end};
  if (parse.hasValue) {
    // From the value's first character to the end of the line's text; text after a NUL goes
    // too, spacing before the value and the line break stay.
    replaced = parse.valueStart;
    bytes += old.substr(0, replaced.begin * width);
  } else {
    bytes += old.substr(0, replaced.begin * width);
    AppendUnit('=', &bytes);
  }
  bytes += value;
  bytes += old.substr(replaced.end * width);
  const size_t grown = bytes.size() / width - line.size;  // wraps round when the line shrank
  const uint32_t breakAt = static_cast<uint32_t>(line.breakAt + grown);
  m_units += grown;
  Store(bytes, &line);
  line.breakAt = breakAt;
  // A line break in the value, or a value that turns an entry such as "[x" into a header,
  // changes the structure.
  IniLine now;
  if (!ParsePlain(bytes, breakAt, &now) || now.isHeader) return Outcome::kReindex;
  line.flags |= kHasValue;
  return Outcome::kChanged;
}

void IndexedIni::EndWithBreak(Line& line) {
  if (line.size == 0) return;
  const char16_t last = TextOf(line)[line.size - 1];
  if (last == '\r' || last == '\n') return;
  std::string bytes(BytesOf(line));
  AppendUnit('\r', &bytes);
  AppendUnit('\n', &bytes);
  m_units += 2;
  Store(bytes, &line);
}

IndexedIni::Outcome IndexedIni::AddEntry(Section& section, std::string_view key,
                                         std::string_view value, const uint32_t* keyHash,
                                         bool nameScreened) {
  const size_t plainNameEnd =
      m_encoding == FileEncoding::kAnsi ? PlainAnsiKey(key, value, nameScreened) : 0;
  if (plainNameEnd != 0 && keyHash && AppendPlainEntry(section, key, value, *keyHash))
    return Outcome::kChanged;
  std::string& bytes = m_lineBytes;
  bytes.clear();
  AppendUnits(key, &bytes);
  AppendUnit('=', &bytes);
  bytes += value;
  const size_t breakAt = bytes.size() / m_width;
  AppendUnit('\r', &bytes);
  AppendUnit('\n', &bytes);
  m_units += breakAt + 2;
  // A line break in the name or value, or a line that reads as a header, changes the
  // structure: the line is added as text all the same.
  IniLine parse;
  bool plain, keyIsName = false;
  if (plainNameEnd != 0) {
    // What the line says, known without reading it again.
    parse.hasValue = plain = keyIsName = true;
    parse.name = {0, plainNameEnd};
  } else {
    plain = ParsePlain(bytes, breakAt, &parse) && !parse.isHeader;
  }

  // After the section's last line with text, before the blank lines that follow it.
  Line& last = section.lines.back();
  const size_t lastEnd = LineEndAfter(TextOf(last), last.breakAt);
  if (lastEnd < last.size) {
    bytes += BytesOf(last).substr(lastEnd * m_width);
    last.size = static_cast<uint32_t>(lastEnd);
  }
  EndWithBreak(last);

  Line line;
  line.flags = static_cast<uint8_t>((parse.hasValue ? kHasValue : 0) |
                                    (parse.name.empty() ? kNameEmpty : 0));
  if (plain && parse.name.empty()) {
    // An empty name right after another empty name (the last visible entry) is dropped.
    for (auto it = section.lines.rbegin(); it != section.lines.rend(); ++it) {
      if (it->flags & kHeader) break;
      if (it->flags & kDropped) continue;
      if (it->flags & kNameEmpty) line.flags |= kDropped;
      break;
    }
  }
  Store(bytes, &line);
  line.breakAt = static_cast<uint32_t>(breakAt);
  const uint32_t index = static_cast<uint32_t>(section.lines.size());
  section.lines.push_back(line);
  if (!plain) return Outcome::kReindex;
  if (!(line.flags & kDropped))
    IndexEntry(section, index, parse, keyIsName && keyHash ? keyHash : nullptr);
  return Outcome::kChanged;
}

bool IndexedIni::AppendPlainEntry(Section& section, std::string_view key, std::string_view value,
                                  uint32_t keyHash) {
  // The section's last line must be the last one added, ending in its own CR LF.
  const Line& last = section.lines.back();
  const size_t end = m_changedLines.size();
  if (!(last.flags & kChanged) || last.at + last.size != end || last.size != last.breakAt + 2 ||
      m_changedLines[end - 2] != '\r' || m_changedLines[end - 1] != '\n')
    return false;
  char* to = m_changedLines.Extend(key.size() + value.size() + 3);
  std::memcpy(to, key.data(), key.size());
  to += key.size();
  *to++ = '=';
  if (!value.empty()) std::memcpy(to, value.data(), value.size());
  to += value.size();
  to[0] = '\r';
  to[1] = '\n';
  // Written where it goes, field by field: a Line built aside and copied in whole is read
  // back before its fields are stored, which stalls the copy.
  const uint32_t index = static_cast<uint32_t>(section.lines.size());
  Line& line = section.lines.emplace_back();
  line.at = static_cast<uint32_t>(end);
  line.breakAt = static_cast<uint32_t>(key.size() + 1 + value.size());
  line.size = line.breakAt + 2;
  line.flags = kChanged | kHasValue;
  m_units += line.size;
  // AddEntry is only asked for a key the section does not have.
  section.entries.InsertAbsent(keyHash, index);
  return true;
}

IndexedIni::Outcome IndexedIni::AddSection(std::string_view app, std::string_view key,
                                           std::string_view value) {
  std::string& bytes = m_lineBytes;
  bytes.clear();
  AppendUnit('[', &bytes);
  AppendUnits(WithoutLeadingBlanks(app), &bytes);
  AppendUnit(']', &bytes);
  const size_t breakAt = bytes.size() / m_width;
  IniLine parse;
  const bool plain = ParsePlain(bytes, breakAt, &parse) && parse.isHeader;
  AppendUnit('\r', &bytes);
  AppendUnit('\n', &bytes);
  m_units += breakAt + 2;
  Line header;
  header.flags = kHeader;
  Store(bytes, &header);
  header.breakAt = static_cast<uint32_t>(breakAt);
  Section section;
  // A section made here is being filled by a run of writes: room for them saves regrowing.
  section.lines.reserve(32);
  section.lines.push_back(header);
  // AddEntry makes the entry line; the header has no blank lines after it to hand on.
  const Outcome entry = AddEntry(section, key, value, nullptr, false);

  // A file whose last line has no break gets one first, so the header starts a line.
  EndWithBreak(m_sections.empty() ? m_prefix : m_sections.back().lines.back());
  m_sections.push_back(std::move(section));
  if (!plain || entry == Outcome::kReindex) return Outcome::kReindex;
  IndexHeader(static_cast<uint32_t>(m_sections.size() - 1));
  return Outcome::kChanged;
}

}  // namespace tolvex::platform
