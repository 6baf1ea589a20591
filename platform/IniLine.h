// The grammar of one line of a profile file, as the Windows profile functions read it: blanks,
// trimming, headers closed by the last ']', entries split at the first '=', names and values cut
// at a NUL. The indexed form (IndexedIni.h) reads every line of a file by these rules. Pure
// functions over ranges of a file's units, whatever holds them.
#ifndef TOLVEX_PLATFORM_INILINE_H
#define TOLVEX_PLATFORM_INILINE_H

#include <cstddef>
#include <cstring>
#include <string>
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

// `text` without the blanks it starts with.
inline std::string_view WithoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  return text;
}
// Both ends of `text` trimmed of blanks.
inline std::string_view TrimBlanks(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

// Whether `kept` (a name kept from an earlier call, with no NUL in it) is the C string `text`.
inline bool IsSameName(const std::string& kept, const char* text) {
  // strcmp stops where `kept` ends (its NUL is its only one), as a bounded compare would.
  return std::strcmp(kept.c_str(), text) == 0;
}

// The rules below read any text of units: `Text` gives its size() and its unit at [i] as a
// char16_t (a std::u16string_view, or the indexed form's view of a file's bytes).

// Where the line break of the line starting at `begin` starts (the end of `units` if none).
template <typename Text>
size_t LineBreakAt(const Text& units, size_t begin) {
  while (begin < units.size() && units[begin] != 0x0D && units[begin] != 0x0A) ++begin;
  return begin;
}
// One past the line's own break at `breakAt`: CRLF, or one CR or LF. Further breaks are lines
// of their own, empty ones, which the reading rules drop anyway.
template <typename Text>
size_t LineEndAfter(const Text& units, size_t breakAt) {
  if (breakAt >= units.size()) return breakAt;
  return breakAt +
         ((units[breakAt] == 0x0D && breakAt + 1 < units.size() && units[breakAt + 1] == 0x0A) ? 2
                                                                                             : 1);
}

namespace line_rules {

// `range` ended at its first NUL.
template <typename Text>
UnitRange CutAtNul(const Text& units, UnitRange range) {
  for (size_t i = range.begin; i < range.end; ++i)
    if (units[i] == 0) return {range.begin, i};
  return range;
}

template <typename Text>
UnitRange TrimRange(const Text& units, UnitRange range) {
  while (range.begin < range.end && IsBlank(units[range.begin])) ++range.begin;
  while (range.end > range.begin && IsBlank(units[range.end - 1])) --range.end;
  return range;
}

}  // namespace line_rules

// Reads the line of `units` from `begin` up to `contentEnd` (where its line break, if any,
// starts): fills `line`'s content, kind, name and value, all as ranges of `units`, and leaves
// its other fields alone. False when the line trims to nothing, which the reading rules drop.
template <typename Text>
bool ParseLine(const Text& units, size_t begin, size_t contentEnd, IniLine* line) {
  using line_rules::CutAtNul;
  using line_rules::TrimRange;
  line->content = TrimRange(units, {begin, contentEnd});
  if (line->content.empty()) return false;
  const UnitRange content = line->content;
  size_t lastBracket = content.end;
  if (units[content.begin] == '[') {
    for (size_t i = content.end; i > content.begin + 1; --i) {
      if (units[i - 1] == ']') {
        lastBracket = i - 1;
        break;
      }
    }
  }
  line->isHeader = lastBracket != content.end;
  line->hasValue = false;
  line->valueStart = line->value = UnitRange{};
  if (line->isHeader) {
    line->name = CutAtNul(units, TrimRange(units, {content.begin + 1, lastBracket}));
    return true;
  }
  size_t equals = content.begin;
  while (equals < content.end && units[equals] != '=') ++equals;
  if (equals < content.end) {
    line->hasValue = true;
    line->name = CutAtNul(units, TrimRange(units, {content.begin, equals}));
    line->valueStart = TrimRange(units, {equals + 1, content.end});
    line->value = CutAtNul(units, line->valueStart);
  } else {
    line->name = CutAtNul(units, content);
  }
  return true;
}

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_INILINE_H
