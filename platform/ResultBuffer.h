// How the profile read functions fill the caller's buffer: quote stripping and cutting of a
// single value, the layout and cutting of a NUL-separated name list, and the trimming of a
// default. These are the Windows rules, quirks included. Pure functions.
#ifndef TOLVEX_PLATFORM_RESULTBUFFER_H
#define TOLVEX_PLATFORM_RESULTBUFFER_H

#include <cstdint>
#include <string_view>

namespace tolvex::platform {

// Copies `text` into `buffer` of `size` bytes: a pair of matching quotes around it is dropped,
// the text is cut to size - 1 bytes and ended by one NUL, nothing after it is written.
// Returns the bytes before the NUL. With the quotes, a buffer that holds exactly the text and
// its closing quote loses one more character, as on Windows. Size 0 writes nothing.
uint32_t CopyValueText(std::string_view text, char* buffer, uint32_t size);

// Copies a name list (each name followed by NUL) into `buffer`, followed by one more NUL.
// When that does not fit (an exact fit of the list and one NUL included), the first
// size - 2 bytes of the list are followed by two NULs and size - 2 is returned. An empty list
// gives one NUL and 0; size 1 gives "" and 0; size 0 writes nothing.
uint32_t CopyNameList(std::string_view list, char* buffer, uint32_t size);

// The default of a value read: trailing spaces (not tabs) removed, but one kept when the text
// is nothing but spaces.
std::string_view TrimDefaultSpaces(std::string_view text);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_RESULTBUFFER_H
