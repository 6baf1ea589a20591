// Loads of up to eight bytes as one 64-bit word, the first byte lowest (as a little-endian
// load gives it), for the scans that read names and values eight bytes at a time. Only the
// bytes asked for are read, in fixed-size moves rather than a call of memcpy.
#ifndef TOLVEX_PLATFORM_WORDLOAD_H
#define TOLVEX_PLATFORM_WORDLOAD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tolvex::platform {

// `count` (at most 8) bytes from `bytes`; the word's bytes past them are 0.
inline uint64_t LoadWord(const unsigned char* bytes, size_t count) {
  static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "bytes are loaded little-endian");
  uint64_t word = 0;
  if (count == 8) {
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }
  size_t at = 0;
  if (count & 4) {
    uint32_t four;
    std::memcpy(&four, bytes, sizeof four);
    word = four;
    at = 4;
  }
  if (count & 2) {
    uint16_t two;
    std::memcpy(&two, bytes + at, sizeof two);
    word |= uint64_t{two} << (8 * at);
    at += 2;
  }
  if (count & 1) word |= uint64_t{bytes[at]} << (8 * at);
  return word;
}

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_WORDLOAD_H
