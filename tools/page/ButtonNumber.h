// How the tool numbers the buttons of a layout, and which library index each number stands
// for. The library gives the indexes 0 and 1 a meaning of their own: it keeps their navigation
// values in the "PrevButton" and "NextButton" sections, where its getter never reads them. So
// that every property of every button can be written and read back, tool button n is library
// index n + 1: the buttons of a layout of N buttons are 1..N for the user and 2..N+1 in the
// file. Templates written by earlier versions of the tool (buttons at indexes 1..N) still
// show, check and render; their button at index 1 has no tool number, and check says so.
#ifndef TOLVEX_TOOLS_BUTTONNUMBER_H
#define TOLVEX_TOOLS_BUTTONNUMBER_H

#include <cstdint>
#include <optional>

namespace menutool {

// The library index of tool button 1.
constexpr unsigned kFirstButtonIndex = 2;
// The largest tool number: its index must still print as a positive "%d".
constexpr unsigned kLastButtonNumber = INT32_MAX - (kFirstButtonIndex - 1);

inline unsigned LibraryIndex(unsigned number) { return number + (kFirstButtonIndex - 1); }

// The tool number of a library index; none for the indexes below kFirstButtonIndex and for
// those that print as negative numbers.
inline std::optional<unsigned> ButtonNumber(unsigned index) {
  if (index < kFirstButtonIndex || index > static_cast<unsigned>(INT32_MAX)) return std::nullopt;
  return index - (kFirstButtonIndex - 1);
}

}  // namespace menutool

#endif  // TOLVEX_TOOLS_BUTTONNUMBER_H
