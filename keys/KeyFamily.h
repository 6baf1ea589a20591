// How the template's keys are described: a family of keys per accessor, with its encoding and
// read buffer, and the text that marks a key as missing; and how a key's name is made from its
// pattern. Shared by the accessors of CMenuTemplate and by the renderer, which reads the same
// keys: a key's name is written once, in the tables beside this file. No state.
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

// A key pattern split at its placeholder: the text before it and the text after it.
struct KeyPattern {
  std::string_view head, tail;
  bool filled = false;  // whether it has a placeholder
};
constexpr KeyPattern SplitKeyPattern(const char* pattern) {
  std::size_t at = 0;
  while (pattern[at] != '\0' && pattern[at] != '%') ++at;
  if (pattern[at] == '\0' || pattern[at + 1] == '\0') return KeyPattern{pattern, {}, false};
  return KeyPattern{std::string_view(pattern, at), std::string_view(pattern + at + 2), true};
}

// The keys one accessor writes and reads, in that order, all in one encoding and read through
// one buffer size. A key pattern holds at most one placeholder, "%d" (a button index) or "%s"
// (a navigation button's "Prev" or "Next"), which the caller fills in; the patterns are split
// at it when the tables are made.
template <std::size_t N>
struct KeyFamily {
  constexpr KeyFamily(const std::array<const char*, N>& keys, Encoding encoding,
                      DWORD readBuffer)
      : keys(keys), encoding(encoding), readBuffer(readBuffer), patterns(Split(keys)) {}

  std::array<const char*, N> keys;
  Encoding encoding;
  DWORD readBuffer;
  std::array<KeyPattern, N> patterns;

 private:
  static constexpr std::array<KeyPattern, N> Split(const std::array<const char*, N>& keys) {
    std::array<KeyPattern, N> patterns{};
    for (std::size_t i = 0; i < N; ++i) patterns[i] = SplitKeyPattern(keys[i]);
    return patterns;
  }
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
  // Copies `n` bytes, kSize <= n <= 2 * kSize, in two moves of kSize bytes that overlap.
  template <std::size_t kSize>
  static void CopyInTwo(const char* from, char* to, std::size_t n) {
    char first[kSize], last[kSize];
    std::memcpy(first, from, kSize);
    std::memcpy(last, from + n - kSize, kSize);
    std::memcpy(to, first, kSize);
    std::memcpy(to + n - kSize, last, kSize);
  }
  static char* CopyPiece(std::string_view piece, char* to) {
    const std::size_t n = piece.size();
    const char* from = piece.data();
    if (n > 32) {
      std::memcpy(to, from, n);
    } else if (n >= 16) {
      CopyInTwo<16>(from, to, n);
    } else if (n >= 8) {
      CopyInTwo<8>(from, to, n);
    } else if (n >= 4) {
      CopyInTwo<4>(from, to, n);
    } else if (n >= 2) {
      CopyInTwo<2>(from, to, n);
    } else if (n == 1) {
      *to = *from;
    }
    return to + n;
  }
};
inline KeyParts FillKeyPattern(const KeyPattern& pattern, std::string_view fill) {
  if (!pattern.filled) return KeyParts{pattern.head, {}, {}};
  return KeyParts{pattern.head, fill, pattern.tail};
}
inline KeyParts FillKeyPattern(const char* pattern, std::string_view fill) {
  return FillKeyPattern(SplitKeyPattern(pattern), fill);
}

}  // namespace tolvex

#endif  // TOLVEX_KEYS_KEYFAMILY_H
