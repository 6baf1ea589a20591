// Comparing names without regard to the case of ASCII letters, as strcasecmp does in the C
// locale: section and key names (the profile functions match them so) and font names.
#ifndef TOLVEX_TOOLS_ASCIICASE_H
#define TOLVEX_TOOLS_ASCIICASE_H

#include <string_view>

namespace menutool {

inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

inline bool StartsIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

}  // namespace menutool

#endif  // TOLVEX_TOOLS_ASCIICASE_H
