// Code page 1252 to and from UTF-8 for JSON (see JsonText.h).
#include "tools/page/JsonText.h"

#include <cstdint>
#include <cstdio>

namespace menutool {
namespace {

// Bytes 0x80 to 0x9F; the rest of the code page is Latin-1, byte value = code point.
constexpr char32_t kHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

void AppendUtf8(char32_t c, std::string* out) {
  if (c < 0x80) {
    out->push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (c >> 6)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {  // the code page reaches no further than U+2122
    out->push_back(static_cast<char>(0xE0 | (c >> 12)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

std::optional<unsigned char> ByteOf(char32_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<unsigned char>(c);
  for (unsigned i = 0; i < 32; ++i)
    if (kHigh[i] == c) return static_cast<unsigned char>(0x80 + i);
  return std::nullopt;
}

}  // namespace

std::string Utf8FromCp1252(const std::string& bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (unsigned char b : bytes) AppendUtf8(b >= 0x80 && b < 0xA0 ? kHigh[b - 0x80] : b, &out);
  return out;
}

std::optional<std::string> Cp1252FromUtf8(const std::string& utf8, std::string* why) {
  std::string out;
  out.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t i = 1; i < length && at + i < utf8.size(); ++i)
      c = (c << 6) | (static_cast<unsigned char>(utf8[at + i]) & 0x3F);
    at += length;
    std::optional<unsigned char> byte = ByteOf(c);
    if (!byte) {
      char code[16];
      std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(c));
      *why = std::string("the character ") + code + " is not in code page 1252";
      return std::nullopt;
    }
    out.push_back(static_cast<char>(*byte));
  }
  return out;
}

}  // namespace menutool
