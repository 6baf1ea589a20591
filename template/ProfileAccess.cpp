// The profile calls and value conversions behind KeyTarget: one WritePrivateProfileStringA or
// GetPrivateProfileStringA per key, on the caller's thread, with nothing held between calls.
#include "template/ProfileAccess.h"

#include <tolvex/Profile.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace tolvex {

CString IntegerText(int value) {
  // Written out rather than through std::to_chars, whose digit table would be a unique
  // symbol that keeps the library from unloading.
  char digits[12];
  char* const end = digits + sizeof digits;
  char* at = end;
  unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    *--at = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (value < 0) *--at = '-';
  return CString(at, static_cast<int>(end - at));
}

CString EncodeValue(Encoding encoding, int value) {
  if (encoding == Encoding::Flag) return CString(value != 0 ? "TRUE" : "FALSE");
  return IntegerText(value);
}

CString EncodeValue(Encoding encoding, unsigned int value) {
  // Printed as the signed 32-bit value, so 4294967295 is stored as -1.
  return EncodeValue(encoding, static_cast<int>(value));
}

CString EncodeValue(Encoding /*encoding*/, const CString& value) { return value; }

CString EncodeValue(Encoding encoding, long value) {
  return EncodeValue(encoding, static_cast<int>(value));
}

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

KeyName::KeyName(const char* pattern, const CString& fill) {
  const KeyParts parts =
      FillKeyPattern(pattern, std::string_view(fill.GetString(), fill.GetLength()));
  if (parts.size() < sizeof m_short) {
    char* to = m_short;
    for (std::string_view part : {parts.head, parts.fill, parts.tail})
      to = std::copy(part.begin(), part.end(), to);
    *to = '\0';
    m_text = m_short;
  } else {
    m_long.append(parts.head).append(parts.fill).append(parts.tail);
    m_text = m_long.c_str();
  }
}

KeyTarget::KeyTarget(State state, const CString* file, CString section, CString fill)
    : m_state(state), m_file(file), m_section(std::move(section)), m_fill(std::move(fill)) {}

KeyTarget KeyTarget::In(const CString& file, CString section, CString fill) {
  return KeyTarget(State::Ready, &file, std::move(section), std::move(fill));
}

KeyTarget KeyTarget::Unusable() { return KeyTarget(State::Unusable, nullptr, {}, {}); }
KeyTarget KeyTarget::Inert() { return KeyTarget(State::Inert, nullptr, {}, {}); }

bool KeyTarget::WriteKey(const char* pattern, const CString& value) const {
  const KeyName key(pattern, m_fill);
  return WritePrivateProfileStringA(m_section, key.c_str(), value, *m_file) != 0;
}

bool KeyTarget::ReadKey(const char* pattern, DWORD readBuffer, char* text) const {
  const KeyName key(pattern, m_fill);
  text[0] = '\0';
  GetPrivateProfileStringA(m_section, key.c_str(), kMissingValue, text, readBuffer, *m_file);
  return std::strcmp(text, kMissingValue) != 0;
}

}  // namespace tolvex
