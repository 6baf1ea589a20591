// The grammar of one line of a profile file, as the Windows profile functions read it: blanks,
// trimming, headers closed by the last ']', entries split at the first '=', names and values cut
// at a NUL. The indexed form (IndexedIni.h) reads every line of a file by these rules. Pure
// functions over ranges of a file's units.
#ifndef TOLVEX_PLATFORM_INILINE_H
#define TOLVEX_PLATFORM_INILINE_H

#include <cstddef>
#include <string_view>

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

// Blanks, as the profile functions trim them: 0x09 to 0x0D, Ctrl-Z and space.
inline bool IsBlank(char16_t unit) {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x1A || unit == 0x20;
}

// Both ends of `text` trimmed of blanks.
std::string_view TrimBlanks(std::string_view text);

// Where the line break of the line starting at `begin` starts (the end of `units` if none).
size_t LineBreakAt(std::u16string_view units, size_t begin);
// One past the line's own break at `breakAt`: CRLF, or one CR or LF. Further breaks are lines
// of their own, empty ones, which the reading rules drop anyway.
size_t LineEndAfter(std::u16string_view units, size_t breakAt);

// Reads the line of `units` from `begin` up to `contentEnd` (where its line break, if any,
// starts): fills `line`'s content, kind, name and value, all as ranges of `units`, and leaves
// its other fields alone. False when the line trims to nothing, which the reading rules drop.
bool ParseLine(std::u16string_view units, size_t begin, size_t contentEnd, IniLine* line);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INILINE_H
