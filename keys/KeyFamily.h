// How the template's keys are described: a family of keys per accessor, with its encoding and
// read buffer, and the text that marks a key as missing. Pure data, shared by the accessors of
// CMenuTemplate and by the renderer, which reads the same keys: a key's name is written once,
// in the tables beside this file. No code and no state.
#ifndef TOLVEX_KEYS_KEYFAMILY_H
#define TOLVEX_KEYS_KEYFAMILY_H

#include <tolvex/WinTypes.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace tolvex {

// How a value is kept as text in the template file.
enum class Encoding {
  Integer,  // "%d" of the 32-bit value; read back with atoi (unsigned values wrap both ways)
  Flag,     // "TRUE" for nonzero, "FALSE" for 0; read back as 1 only for "TRUE" or "true"
  Text,     // the characters unchanged
};

// Read buffer sizes, in bytes with the terminating NUL: texts longer than 79 or 999
// characters come back cut.
inline constexpr DWORD kShortRead = 80;
inline constexpr DWORD kLongRead = 1000;

// A key whose value reads as this text counts as missing: it is the default of every read.
inline constexpr char kMissingValue[] = "default";

// The keys one accessor writes and reads, in that order, all in one encoding and read through
// one buffer size. A key pattern holds at most one placeholder, "%d" (a button index) or "%s"
// (a navigation button's "Prev" or "Next"), which the caller fills in.
template <std::size_t N>
struct KeyFamily {
  std::array<const char*, N> keys;
  Encoding encoding;
  DWORD readBuffer;
};

// A key pattern with its placeholder filled: the name is head + fill + tail. Also any other
// name made of up to three pieces, such as a layout section's.
struct KeyParts {
  std::string_view head, fill, tail;
  std::size_t size() const { return head.size() + fill.size() + tail.size(); }
  // Writes the name to `to` with a NUL after it; returns the place after the NUL. Names are
  // short, so each piece is copied in at most two overlapping moves of a fixed size (a call
  // of memcpy would cost more than the copy).
  char* CopyTo(char* to) const {
    to = CopyPiece(head, to);
    to = CopyPiece(fill, to);
    to = CopyPiece(tail, to);
    *to = '\0';
    return to + 1;
  }

 private:
  template <std::size_t kSize>
  static void Move(const char* from, char* to) {
    char word[kSize];
    std::memcpy(word, from, kSize);
    std::memcpy(to, word, kSize);
  }
  static char* CopyPiece(std::string_view piece, char* to) {
    const std::size_t n = piece.size();
    const char* from = piece.data();
    if (n > 32) {
      std::memcpy(to, from, n);
    } else if (n >= 16) {
      Move<16>(from, to);
      Move<16>(from + n - 16, to + n - 16);
    } else if (n >= 8) {
      Move<8>(from, to);
      Move<8>(from + n - 8, to + n - 8);
    } else if (n >= 4) {
      Move<4>(from, to);
      Move<4>(from + n - 4, to + n - 4);
    } else if (n >= 2) {
      Move<2>(from, to);
      Move<2>(from + n - 2, to + n - 2);
    } else if (n == 1) {
      *to = *from;
    }
    return to + n;
  }
};
inline KeyParts FillKeyPattern(const char* pattern, std::string_view fill) {
  const char* placeholder = std::strchr(pattern, '%');
  if (placeholder == nullptr || placeholder[1] == '\0') return KeyParts{pattern, {}, {}};
  return KeyParts{std::string_view(pattern, static_cast<std::size_t>(placeholder - pattern)),
                  fill, std::string_view(placeholder + 2)};
}

}  // namespace tolvex

#endif  // TOLVEX_KEYS_KEYFAMILY_H
