// The reading rules of one line (see IniLine.h).
#include "platform/IniLine.h"

namespace tolvex::platform {
namespace {

constexpr char16_t kCr = 0x0D, kLf = 0x0A, kNul = 0;

// `range` ended at its first NUL.
UnitRange CutAtNul(std::u16string_view units, UnitRange range) {
  for (size_t i = range.begin; i < range.end; ++i)
    if (units[i] == kNul) return {range.begin, i};
  return range;
}

UnitRange TrimRange(std::u16string_view units, UnitRange range) {
  while (range.begin < range.end && IsBlank(units[range.begin])) ++range.begin;
  while (range.end > range.begin && IsBlank(units[range.end - 1])) --range.end;
  return range;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

size_t LineBreakAt(std::u16string_view units, size_t begin) {
  while (begin < units.size() && units[begin] != kCr && units[begin] != kLf) ++begin;
  return begin;
}

size_t LineEndAfter(std::u16string_view units, size_t breakAt) {
  if (breakAt >= units.size()) return breakAt;
  return breakAt + ((units[breakAt] == kCr && breakAt + 1 < units.size() &&
                     units[breakAt + 1] == kLf)
                        ? 2
                        : 1);
}

bool ParseLine(std::u16string_view units, size_t begin, size_t contentEnd, IniLine* line) {
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
