// Code page 1252 to and from UTF-8 for JSON (see JsonText.h).
#include "tools/page/JsonText.h"

#include <cstdint>
#include <cstdio>

#include "platform/Cp1252.h"

namespace menutool {
namespace {

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

// The code page's byte for `c` when it has one of its own; a best fit is no round trip.
std::optional<unsigned char> ByteOf(char32_t c) {
  if (c > 0xFFFF) return std::nullopt;
  const unsigned char byte = tolvex::platform::Cp1252FromUnicode(static_cast<char16_t>(c));
  if (tolvex::platform::Cp1252ToUnicode(byte) != c) return std::nullopt;
  return byte;
}

}  // namespace

std::string Utf8FromCp1252(const std::string& bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (unsigned char b : bytes) AppendUtf8(tolvex::platform::Cp1252ToUnicode(b), &out);
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
