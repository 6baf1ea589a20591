// The buffer rules of GetPrivateProfileStringA. Pure functions; they write only the bytes
// they report plus the terminating NULs.
#include "platform/ResultBuffer.h"

#include <algorithm>
#include <cstring>

namespace tolvex::platform {

uint32_t CopyValueText(std::string_view text, char* buffer, uint32_t size) {
  if (size == 0) return 0;
  size_t room = size - 1;
  size_t copied;
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
      text.back() == text.front()) {
    // Windows drops the opening quote, copies the rest closing quote included, and then
    // drops the last character copied whenever the buffer could take the whole rest
    // without its NUL. So a buffer one byte short of the unquoted text loses two characters.
    std::string_view rest = text.substr(1);
    copied = std::min(rest.size(), room);
    std::memcpy(buffer, rest.data(), copied);
    if (size >= rest.size() && copied > 0) --copied;
  } else {
    copied = std::min(text.size(), room);
    std::memcpy(buffer, text.data(), copied);
  }
  buffer[copied] = '\0';
  return static_cast<uint32_t>(copied);
}

uint32_t CopyNameList(std::string_view list, char* buffer, uint32_t size) {
  if (size == 0) return 0;
  if (size == 1 || list.empty()) {
    buffer[0] = '\0';
    return 0;
  }
  if (size >= list.size() + 2) {
    std::memcpy(buffer, list.data(), list.size());
    buffer[list.size()] = '\0';
    return static_cast<uint32_t>(list.size());
  }
  size_t kept = size - 2;
  std::memcpy(buffer, list.data(), kept);
  buffer[kept] = '\0';
  buffer[kept + 1] = '\0';
  return static_cast<uint32_t>(kept);
}

std::string_view TrimDefaultSpaces(std::string_view text) {
  size_t end = text.size();
  while (end > 0 && text[end - 1] == ' ') --end;
  if (end == 0 && !text.empty()) end = 1;
  return text.substr(0, end);
}

}  // namespace tolvex::platform
