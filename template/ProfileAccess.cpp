// The profile calls and value conversions behind KeyTarget: one WritePrivateProfileStringA or
// GetPrivateProfileStringA per key, on the caller's thread, with nothing held between calls.
#include "template/ProfileAccess.h"

#include <tolvex/Profile.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace tolvex {

IntegerDigits::IntegerDigits(int value) {
  // Written out rather than through std::to_chars, whose digit table would be a unique
  // symbol that keeps the library from unloading.
  char* at = m_text + kEnd;
  *at = '\0';
  unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    *--at = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (value < 0) *--at = '-';
  m_begin = at;
}

ValueText::ValueText(Encoding encoding, int value) : m_digits(value) {
  if (encoding == Encoding::Flag)
    m_text = value != 0 ? "TRUE" : "FALSE";
  else
    m_text = m_digits.c_str();
}

ValueText::ValueText(Encoding /*encoding*/, const CString& value)
    : m_digits(0), m_text(value.GetString()) {}

void DecodeValue(Encoding encoding, const char* text, int* value) {
  if (encoding == Encoding::Flag)
    *value = std::strcmp(text, "TRUE") == 0 || std::strcmp(text, "true") == 0;
  else
    *value = std::atoi(text);
}

void DecodeValue(Encoding encoding, const char* text, unsigned int* value) {
  int decoded = 0;
  DecodeValue(encoding, text, &decoded);
  *value = static_cast<unsigned int>(decoded);  // bit for bit: "-1" reads as 4294967295
}

void DecodeValue(Encoding /*encoding*/, const char* text, CString* value) { *value = text; }

void DecodeValue(Encoding encoding, const char* text, long* value) {
  int decoded = 0;
  DecodeValue(encoding, text, &decoded);
  *value = decoded;
}

namespace {

// Copies the three pieces to `to`, one after another, and ends them with a NUL; returns the
// place after the NUL.
char* CopyPieces(char* to, std::string_view head, std::string_view middle,
                 std::string_view tail) {
  for (std::string_view piece : {head, middle, tail}) {
    if (piece.empty()) continue;  // an empty view may hold no pointer at all
    std::memcpy(to, piece.data(), piece.size());
    to += piece.size();
  }
  *to = '\0';
  return to + 1;
}

}  // namespace

ShortText::ShortText(std::string_view head, std::string_view middle, std::string_view tail)
    : m_size(head.size() + middle.size() + tail.size()) {
  if (m_size < sizeof m_short) {
    CopyPieces(m_short, head, middle, tail);
  } else {
    m_short[0] = '\0';
    m_long.reserve(m_size);
    m_long.append(head).append(middle).append(tail);
  }
}

ShortText& ShortText::operator=(const ShortText& other) {
  if (this == &other) return *this;
  m_size = other.m_size;
  if (other.m_long.empty()) {
    std::memcpy(m_short, other.m_short, m_size + 1);
    m_long.clear();
  } else {
    m_short[0] = '\0';
    m_long = other.m_long;
  }
  return *this;
}

KeyTarget::KeyTarget(State state, const char* file, std::string_view section,
                     std::string_view fill)
    : m_state(state), m_file(file), m_section(section), m_fill(fill) {}

KeyTarget KeyTarget::In(const CString& file, std::string_view section, std::string_view fill) {
  return KeyTarget(State::Ready, file.GetString(), section, fill);
}

KeyTarget KeyTarget::Unusable() { return KeyTarget(State::Unusable, nullptr, {}, {}); }
KeyTarget KeyTarget::Inert() { return KeyTarget(State::Inert, nullptr, {}, {}); }

int KeyTarget::WriteKeys(const char* const* patterns, const char* const* values,
                         std::size_t count) const {
  // The key names one after another, each ended by a NUL: in place, or on the heap when long.
  std::array<KeyParts, kMaxFamilyKeys> parts;
  std::size_t total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    parts[i] = FillKeyPattern(patterns[i], m_fill.view());
    total += parts[i].size() + 1;
  }
  char inPlace[256];
  std::string onHeap;
  char* to = inPlace;
  if (total > sizeof inPlace) {
    onHeap.resize(total);
    to = &onHeap[0];
  }
  std::array<const char*, kMaxFamilyKeys> keys;
  for (std::size_t i = 0; i < count; ++i) {
    keys[i] = to;
    to = CopyPieces(to, parts[i].head, parts[i].fill, parts[i].tail);
  }
  const int asked = static_cast<int>(count);
  return TolvexWritePrivateProfileStrings(m_section.c_str(), keys.data(), values, asked,
                                          m_file) == asked;
}

bool KeyTarget::ReadKey(const char* pattern, DWORD readBuffer, char* text) const {
  const ShortText key = KeyName(pattern, m_fill.view());
  text[0] = '\0';
  GetPrivateProfileStringA(m_section.c_str(), key.c_str(), kMissingValue, text, readBuffer,
                           m_file);
  return std::strcmp(text, kMissingValue) != 0;
}

}  // namespace tolvex
