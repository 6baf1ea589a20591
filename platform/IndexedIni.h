// The editable, indexed form of a profile file: its lines held one by one, with an index of
// the first section of each name and, per section, of the first visible entry of each name.
// A value read is a lookup in those indexes, which allocates nothing once the form has been
// used; a write changes one line or adds lines at the end of a section or of the file, keeping
// every other byte, so that the bytes it gives back are those the Windows functions would have
// left. Changes that alter the file's structure (removals, line breaks in names or values) are
// made to the text of the lines concerned, and the whole form is then read again from its
// bytes. The one engine of the profile functions: reads, per-call writes, edits and the
// renderer's reading of a template all use it. A plain value; used by one thread at a time,
// reads included (they reuse its buffers).
#ifndef TOLVEX_PLATFORM_INDEXEDINI_H
#define TOLVEX_PLATFORM_INDEXEDINI_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IniLine.h"
#include "platform/NameIndex.h"
#include "platform/Status.h"
#include "platform/TextEncoding.h"

namespace tolvex::platform {

class IndexedIni {
 public:
  explicit IndexedIni(std::string_view bytes = {});

  // The file's bytes as they now are: whole, or handed to `write` in pieces of at most
  // kPieceBytes (stopping at its first failure, which is returned).
  std::string Bytes() const;
  Status WriteBytes(const ByteSink& write) const;
  static constexpr size_t kPieceBytes = 64 << 10;
  // How many bytes the file has.
  size_t ByteSize() const {
    const bool wide = m_encoding == FileEncoding::kUtf16Le || m_encoding == FileEncoding::kUtf16Be;
    return m_mark.size() + m_units * (wide ? 2 : 1) + m_tail.size();
  }
  // About how many bytes of memory the form takes, for bounding caches.
  size_t MemoryUse() const { return m_memory; }

  // GetPrivateProfileStringA on the file: a value, the key list (`key` NULL) or the section
  // list (`app` NULL).
  uint32_t Read(const char* app, const char* key, const char* defaultText, char* buffer,
                uint32_t size) const;
  // WritePrivateProfileStringA on the file (`app` not NULL): true when the bytes changed.
  bool Write(const char* app, const char* key, const char* value);

  // Whether a section called `app` (trimmed, as reads look it up) is in the file.
  bool HasSection(const char* app) const { return FindTrimmedSection(app) >= 0; }
  // The key list of section `app` (matched untrimmed) as the key-list read gives it before it
  // meets a buffer: each name followed by a NUL, empty names included.
  std::string KeyNames(const char* app) const;

 private:
  // A line with content, then its own line break, then any blank lines after it. The ranges
  // of `parse` are offsets into `units`.
  struct Line {
    std::u16string units;
    size_t breakAt = 0;  // where the line's own break starts
    IniLine parse;
  };
  struct Section {
    std::vector<Line> lines;  // the header first, except in the nameless section
    NameIndex entries;        // name -> its first visible entry line
  };
  // The names at the positions of the two indexes.
  struct EntryNames {
    const Section* section;
    std::u16string_view operator()(uint32_t line) const;
  };
  struct SectionNames {
    const IndexedIni* ini;
    std::u16string_view operator()(uint32_t section) const;
  };
  enum class Outcome { kChanged, kUnchanged, kReindex };

  std::u16string Units(std::string_view ansi) const { return UnitsFromAnsi(ansi, m_encoding); }
  // The caller's name as units of this file, in a buffer reused by the next call.
  std::u16string_view NameUnits(std::string_view ansi) const;
  int FindSection(std::u16string_view name) const;
  // The first section called `app` trimmed of blanks (as reads and writes look it up), or -1.
  int FindTrimmedSection(const char* app) const;
  // The first visible entry called `key` trimmed of blanks in `section`, or -1.
  int64_t FindEntry(const Section& section, const char* key) const;
  std::u16string_view NameOf(const Section& section) const;

  uint32_t ReadValue(const char* app, const char* key, const char* defaultText, char* buffer,
                     uint32_t size) const;
  uint32_t ListSectionNames(char* buffer, uint32_t size) const;
  uint32_t ListKeyNames(const char* app, const char* defaultText, char* buffer,
                        uint32_t size) const;

  Outcome SetExisting(Line& line, std::u16string_view value);
  Outcome AddEntry(Section& section, std::string_view key, std::u16string_view value);
  Outcome AddSection(std::string_view app, std::string_view key, std::u16string_view value);
  bool RemoveKey(const char* app, const char* key);
  bool RemoveSection(const char* app);
  void IndexSection(uint32_t index);
  // Reads the form again from its own bytes, after a change of its structure.
  void Reindex();

  FileEncoding m_encoding = FileEncoding::kAnsi;
  std::string m_mark;       // the byte order mark
  std::u16string m_prefix;  // blank lines before the first line with content
  std::string m_tail;       // a last odd byte of a UTF-16 file, which is no unit
  std::vector<Section> m_sections;
  NameIndex m_firstSection;  // name -> its first section
  size_t m_memory = 0;
  size_t m_units = 0;  // in the prefix and all lines
  // Buffers reused from call to call, so that reads and writes need not allocate: the name
  // looked up, a value read, and the value being written.
  mutable std::array<char16_t, 128> m_shortName;  // names of ANSI files that fit
  mutable std::u16string m_nameUnits;
  mutable std::string m_valueText;
  std::u16string m_newValue;
  // The last two sections found by FindTrimmedSection, the latest first: calls alternate
  // between a few sections in long runs. Sections are only ever added at the end, so a section
  // once found stays the first of its name.
  struct RecentSection {
    std::string app;
    int index = -1;
  };
  mutable std::array<RecentSection, 2> m_recent;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INDEXEDINI_H
