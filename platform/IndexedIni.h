// The editable, indexed form of a profile file: its lines held one by one, with an index of
// the first section of each name and, per section, of the first visible entry of each name.
// A read is a lookup in those indexes; a write changes one line or adds lines at the end of a
// section or of the file, exactly where and as the text edits of IniEditor do, so that the
// bytes it gives back are the bytes a write of the file would have left. Changes that alter
// the file's structure (removals, line breaks in values) are made by those text edits on the
// whole text, which is then indexed again. A plain value; used by one thread at a time.
#ifndef TOLVEX_PLATFORM_INDEXEDINI_H
#define TOLVEX_PLATFORM_INDEXEDINI_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/IniDocument.h"
#include "platform/TextEncoding.h"

namespace tolvex::platform {

class IndexedIni {
 public:
  explicit IndexedIni(std::string_view bytes = {});

  // The file's bytes as they now are.
  std::string Bytes() const;
  // About how many bytes of memory the form takes, for bounding caches.
  size_t MemoryUse() const { return m_memory; }

  // GetPrivateProfileStringA on the file: a value, the key list (`key` NULL) or the section
  // list (`app` NULL).
  uint32_t Read(const char* app, const char* key, const char* defaultText, char* buffer,
                uint32_t size) const;
  // WritePrivateProfileStringA on the file (`app` not NULL): true when the bytes changed.
  bool Write(const char* app, const char* key, const char* value);

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
    std::unordered_map<std::u16string, uint32_t> entries;  // folded name -> first visible
  };
  enum class Outcome { kChanged, kUnchanged, kRebuild };

  std::u16string Units(std::string_view ansi) const { return UnitsFromAnsi(ansi, m_encoding); }
  int FindSection(const std::u16string& folded) const;
  // The first section called `app` trimmed of blanks (as reads and writes look it up), or -1.
  int FindTrimmedSection(const char* app) const;
  const Line* FindEntry(const Section& section, const std::u16string& folded) const;
  std::u16string_view NameOf(const Section& section) const;

  uint32_t ReadValue(const char* app, const char* key, const char* defaultText, char* buffer,
                     uint32_t size) const;
  uint32_t ListSectionNames(char* buffer, uint32_t size) const;
  uint32_t ListKeyNames(const char* app, const char* defaultText, char* buffer,
                        uint32_t size) const;

  Outcome SetExisting(Line& line, const std::u16string& value);
  Outcome AddEntry(Section& section, std::string_view key, const std::u16string& value);
  Outcome AddSection(std::string_view app, std::string_view key, const std::u16string& value);
  void IndexSection(uint32_t index);
  bool Rebuild(const char* app, const char* key, const char* value);

  FileEncoding m_encoding = FileEncoding::kAnsi;
  std::string m_mark;       // the byte order mark
  std::u16string m_prefix;  // blank lines before the first line with content
  std::string m_tail;       // a last odd byte of a UTF-16 file, which is no unit
  std::vector<Section> m_sections;
  std::unordered_map<std::u16string, uint32_t> m_firstSection;  // folded name -> index
  size_t m_memory = 0;
  // The last section found by FindTrimmedSection: calls come in long runs on one section.
  // Sections are only ever added at the end, so a section once found stays the first match.
  mutable std::string m_lastApp;
  mutable int m_lastSection = -1;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INDEXEDINI_H
