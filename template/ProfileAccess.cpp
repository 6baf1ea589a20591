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

KeyTarget::KeyTarget(State state, const char* file, const KeyParts& section,
                     std::string_view fill)
    : m_state(state), m_file(file), m_section(section), m_fill(fill) {}

KeyTarget KeyTarget::In(const CString& file, const KeyParts& section, std::string_view fill) {
  KeyTarget target(State::Ready, file.GetString(), section, fill);
  if (!target.m_section.fits() || !target.m_fill.fits()) target.m_state = State::Unusable;
  return target;
}

KeyTarget KeyTarget::Unusable() { return KeyTarget(State::Unusable, nullptr, KeyParts{}, {}); }
KeyTarget KeyTarget::Inert() { return KeyTarget(State::Inert, nullptr, KeyParts{}, {}); }

int KeyTarget::WriteKeys(const KeyPattern* patterns, const char* const* values,
                         std::size_t count) const {
  // The key names one after another, each ended by a NUL, in place, with the room of a
  // ShortText each: a name that would not fit one fails the call, as a read of it does.
  char names[kMaxFamilyKeys * ShortText::kRoom];
  char* to = names;
  std::array<const char*, kMaxFamilyKeys> keys;
  for (std::size_t i = 0; i < count; ++i) {
    const KeyParts parts = FillKeyPattern(patterns[i], m_fill.view());
    if (parts.size() >= ShortText::kRoom) return 0;
    keys[i] = to;
    to = parts.CopyTo(to);
  }
  const int asked = static_cast<int>(count);
  return TolvexWritePrivateProfileStrings(m_section.c_str(), keys.data(), values, asked,
                                          m_file) == asked;
}

bool KeyTarget::ReadKey(const KeyPattern& pattern, DWORD readBuffer, char* text) const {
  const ShortText key = KeyName(pattern, m_fill.view());
  if (!key.fits()) return false;
  text[0] = '\0';
  GetPrivateProfileStringA(m_section.c_str(), key.c_str(), kMissingValue, text, readBuffer,
                           m_file);
  return std::strcmp(text, kMissingValue) != 0;
}

}  // namespace tolvex
