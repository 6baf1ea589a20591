// The editable, indexed form of a profile file, kept compact: the file's bytes in one buffer,
// each line with content as an offset and lengths into it (16 bytes a line, no object of its
// own on the heap), lines changed or added since in a second buffer in the same encoding, and
// an index of the first section of each name and, per section, of the first visible entry of
// each name. A value read is a lookup in those indexes, which allocates nothing once the form
// has been used; a write changes one line or adds lines at the end of a section or of the file,
// keeping every other byte, so that the bytes it gives back are those the Windows functions
// would have left. Changes that alter the file's structure (removals, line breaks in names or
// values) are made to the text of the lines concerned, and the whole form is then read again
// from its bytes. The one engine of the profile functions: reads, per-call writes, edits and
// the renderer's reading of a template all use it. A plain value; used by one thread at a
// time, reads included (they reuse its buffers).
#ifndef TOLVEX_PLATFORM_INDEXEDINI_H
#define TOLVEX_PLATFORM_INDEXEDINI_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ByteBuffer.h"
#include "platform/IniLine.h"
#include "platform/NameIndex.h"
#include "platform/Status.h"
#include "platform/TextEncoding.h"

namespace tolvex::platform {

class IndexedIni {
 public:
  // The form of a file of these bytes; the second form keeps the string as its buffer.
  explicit IndexedIni(std::string_view bytes = {}) : IndexedIni(std::string(bytes)) {}
  explicit IndexedIni(std::string&& bytes);

  // The file's bytes as they now are: whole, or handed to `write` in pieces of at most
  // kPieceBytes (stopping at its first failure, which is returned).
  std::string Bytes() const;
  Status WriteBytes(const ByteSink& write) const;
  static constexpr size_t kPieceBytes = 64 << 10;
  // Whether the form gives exactly `bytes`, compared where its lines lie, without a copy.
  bool HasBytes(std::string_view bytes) const;
  // How many bytes the file has.
  size_t ByteSize() const { return m_mark.size() + m_units * m_width + m_tail.size(); }
  // About how many bytes of memory the form takes, for bounding caches.
  size_t MemoryUse() const;

  // GetPrivateProfileStringA on the file: a value, the key list (`key` NULL) or the section
  // list (`app` NULL).
  uint32_t Read(const char* app, const char* key, const char* defaultText, char* buffer,
                uint32_t size) const;
  // WritePrivateProfileStringA on the file (`app` not NULL): true when the bytes changed.
  bool Write(const char* app, const char* key, const char* value);
  // The same for `count` keys of section `app`, in order, each set to its value (none NULL):
  // how many of the writes changed the bytes.
  size_t SetValues(const char* app, const char* const* keys, const char* const* values,
                   size_t count);

  // Room for `bytes` of changed and added lines, so that an edit that builds a file line by
  // line does not copy its lines again each time the buffer of changed lines grows. Memory is
  // only taken as the lines fill it.
  void ReserveForChanges(size_t bytes) { m_changedLines.Reserve(bytes); }

  // Whether a section called `app` (trimmed, as reads look it up) is in the file.
  bool HasSection(const char* app) const { return FindTrimmedSection(app) >= 0; }
  // The key list of section `app` (matched untrimmed) as the key-list read gives it before it
  // meets a buffer: each name followed by a NUL, empty names included.
  std::string KeyNames(const char* app) const;

 private:
  // A line with content, then its own line break, then any blank lines after it, as units of
  // the file buffer or of the buffer of changed lines. What the line says (its name, value,
  // kind) is read again from its units when needed: lines are short, and that keeps a line at
  // 16 bytes.
  struct Line {
    uint32_t at = 0;       // its first unit in its buffer
    uint32_t breakAt = 0;  // units before its own line break
    uint32_t size = 0;     // all its units, the blank lines after it included
    uint8_t flags = 0;
  };
  enum LineFlag : uint8_t {
    kChanged = 1,    // in the buffer of changed lines
    kHeader = 2,     // a section header
    kHasValue = 4,   // an entry with '='
    kNameEmpty = 8,  // an entry with an empty name
    kDropped = 16,   // an empty-named entry right after another one: invisible
  };
  struct Section {
    std::vector<Line> lines;  // the header first, except in the nameless section
    NameIndex entries;        // name -> its first visible entry line
  };
  // The units of a line as a text of the reading rules (IniLine.h): the bytes of its buffer
  // read one or two at a time, in the file's byte order.
  struct LineText {
    const unsigned char* bytes;
    size_t count;
    bool wide, little;
    size_t size() const { return count; }
    char16_t operator[](size_t i) const {
      if (!wide) return bytes[i];
      const unsigned first = bytes[2 * i], second = bytes[2 * i + 1];
      return static_cast<char16_t>(little ? first | (second << 8) : (first << 8) | second);
    }
  };
  // The same for hot paths, with the width fixed: OnText hands `read` the units of `bytes` as
  // Units<false> for one-byte encodings, Units<true> for UTF-16.
  template <bool kWide>
  struct Units {
    const unsigned char* bytes;
    size_t count;
    bool little;
    size_t size() const { return count; }
    char16_t operator[](size_t i) const {
      if (!kWide) return bytes[i];
      const unsigned first = bytes[2 * i], second = bytes[2 * i + 1];
      return static_cast<char16_t>(little ? first | (second << 8) : (first << 8) | second);
    }
  };
  template <typename Read>
  auto OnText(std::string_view bytes, const Read& read) const {
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    const bool little = m_encoding == FileEncoding::kUtf16Le;
    if (m_width == 1) return read(Units<false>{data, bytes.size(), little});
    return read(Units<true>{data, bytes.size() / 2, little});
  }
  enum class Outcome { kChanged, kUnchanged, kReindex };

  // The index's hash of the name at `range` of a text; bytes are read four at a time.
  template <typename Text>
  static uint32_t HashOf(const Text& text, UnitRange range) {
    return NameIndex::Hash(text, range);
  }
  static uint32_t HashOf(const Units<false>& text, UnitRange range) {
    return NameIndex::HashBytes(text.bytes + range.begin, range.size());
  }

  LineText TextOf(const Line& line) const;
  LineText TextOf(std::string_view bytes) const;
  std::string_view BytesOf(const Line& line) const;
  // What the line says, as ranges of its units.
  IniLine ParseOf(const Line& line) const;
  // Parses the line of `bytes` (units in the file's encoding) whose break starts at unit
  // `breakAt`: true when it has content and no line break before `breakAt`.
  bool ParsePlain(std::string_view bytes, size_t breakAt, IniLine* parse) const;
  // Whether the name of `line` at `range` is the same as `name` (units of its text).
  template <typename Name>
  bool NameIs(const Line& line, UnitRange range, const Name& name) const;
  // Adds `bytes` (units in the file's encoding) to the buffer of changed lines as the new text
  // of `line`; the caller sets where its break starts.
  void Store(std::string_view bytes, Line* line);
  // The caller's ANSI text, or one unit, appended to `out` as units in the file's encoding.
  void AppendUnits(std::string_view ansi, std::string* out) const;
  void AppendUnit(char16_t unit, std::string* out) const;

  // The caller's name as units of this file, in a buffer reused by the next call.
  std::u16string_view NameUnits(std::string_view ansi) const;
  int FindSection(std::u16string_view name) const;
  // The first section called `app` trimmed of blanks (as reads and writes look it up), or -1.
  int FindTrimmedSection(const char* app) const;
  // The first visible entry called `name` (a text of units) in `section`, or -1; `parse` gets
  // what it says and `hash` the hash of the name. FindHashed takes the hash, FindKey the
  // caller's ANSI name and, when `screened` is given, tells there whether the name holds none
  // of the bytes that keep it from standing as it is in a line ('=', NUL, line breaks; false
  // for files that are not ANSI).
  template <typename Name>
  int64_t FindEntry(const Section& section, const Name& name, IniLine* parse,
                    uint32_t* hash) const;
  template <typename Name>
  int64_t FindHashed(const Section& section, const Name& name, uint32_t hash,
                     IniLine* parse) const;
  int64_t FindKey(const Section& section, std::string_view key, IniLine* parse, uint32_t* hash,
                  bool* screened = nullptr) const;
  // Whether `section` is called `name`.
  bool IsCalled(const Section& section, std::u16string_view name) const;

  uint32_t ReadValue(const char* app, const char* key, const char* defaultText, char* buffer,
                     uint32_t size) const;
  // The entry a value read of `key` in section `app` finds (both trimmed), with the range of
  // its value; nullptr when there is none or it has no '='.
  const Line* FindValueLine(const char* app, const char* key, UnitRange* value) const;
  uint32_t ListSectionNames(char* buffer, uint32_t size) const;
  uint32_t ListKeyNames(const char* app, const char* defaultText, char* buffer,
                        uint32_t size) const;
  void AppendAnsi(const Line& line, UnitRange range, std::string* out) const;

  // The value is in the file's encoding.
  Outcome SetExisting(Line& line, const IniLine& parse, std::string_view value);
  // `key` comes without its leading blanks; `keyHash`, when known, is the hash of its name,
  // and `nameScreened` whether FindKey found its name free of special bytes.
  Outcome AddEntry(Section& section, std::string_view key, std::string_view value,
                   const uint32_t* keyHash, bool nameScreened);
  // AddEntry's common case, an ANSI file's plain entry (PlainAnsiKey) after the entry added
  // last: the line goes straight to the end of the buffer of changed lines. False, with
  // nothing done, when the section's last line is not the one added last.
  bool AppendPlainEntry(Section& section, std::string_view key, std::string_view value,
                        uint32_t keyHash);
  Outcome AddSection(std::string_view app, std::string_view key, std::string_view value);
  // Gives `line` a line break of its own at its end when its last unit is none.
  void EndWithBreak(Line& line);
  bool RemoveKey(const char* app, const char* key);
  bool RemoveSection(const char* app);
  void IndexSection(uint32_t index);
  void IndexHeader(uint32_t index);
  void IndexEntry(Section& section, uint32_t index, const IniLine& parse,
                  const uint32_t* knownHash);
  // Reads the form again from its own bytes, after a change of its structure.
  void Reindex();
  // Moves every line into one new file buffer once the units no line uses any more (lines
  // changed since) outweigh half the file.
  void CompactIfWasteful();
  // Calls `visit` with the file's bytes in order, in runs of whole lines.
  template <typename Visit>
  bool VisitBytes(const Visit& visit) const;

  FileEncoding m_encoding = FileEncoding::kAnsi;
  size_t m_width = 1;  // bytes a unit
  std::string m_mark;  // the byte order mark
  std::string m_tail;  // a last odd byte of a UTF-16 file, which is no unit
  std::string m_file;  // the bytes the form was read from (lines point past the mark)
  ByteBuffer m_changedLines;   // the units of lines changed or added since, in the file's encoding
  Line m_prefix;               // blank lines before the first line with content
  std::vector<Section> m_sections;
  NameIndex m_firstSection;  // name -> its first section
  size_t m_units = 0;        // in the prefix and all lines
  // Buffers reused from call to call, so that reads and writes need not allocate: the name
  // looked up, a value read, text on its way between ANSI and UTF-16, and the value being
  // written and the line being changed in the file's encoding.
  mutable std::array<char16_t, 128> m_shortName;  // names of ANSI files that fit
  mutable std::u16string m_nameUnits;
  mutable std::string m_valueText;
  mutable std::u16string m_wideUnits;
  std::string m_newValue;
  std::string m_lineBytes;
  // The last two sections found by FindTrimmedSection, the latest first: calls alternate
  // between a few sections in long runs. Sections are only ever added at the end, so a section
  // once found stays the first of its name.
  struct RecentSection {
    std::string app;
    int index = -1;
  };
  mutable std::array<RecentSection, 2> m_recent;
  // The entry the last value read found, asked for by the same texts: a value read again and
  // again (a template's button count, which every button's call reads) skips both lookups.
  // It is still the entry while its line is unchanged: lines only ever get new entries after
  // them, and a changed line gets a new place in the buffer of changed lines, whose places are
  // only ever used again after a compaction. Changes of structure build the form anew.
  struct RecentEntry {
    std::string app, key;
    int section = -1;
    uint32_t entry = 0;
    Line line;
    UnitRange value;
    uint32_t compactions = 0;
  };
  mutable RecentEntry m_recentEntry;
  uint32_t m_compactions = 0;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INDEXEDINI_H
