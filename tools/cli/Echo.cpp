// Repeating input in messages (see Echo.h).
#include "tools/cli/Echo.h"

#include <cstdio>

namespace menutool {

std::string Echo(std::string_view text, std::size_t limit) {
  std::size_t cut = text.size();
  if (cut > limit) {
    cut = limit;
    // A UTF-8 character is kept whole or left out: back up over continuation bytes.
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  }
  std::string out;
  out.reserve(cut + 3);
  for (std::size_t i = 0; i < cut; ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    switch (c) {
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case 0x1B: out += "\\e"; break;
      default:
        if (c < 0x20 || c == 0x7F) {
          char code[5];
          std::snprintf(code, sizeof code, "\\x%02X", c);
          out += code;
        } else {
          out.push_back(static_cast<char>(c));
        }
    }
  }
  if (cut < text.size()) out += "...";
  return out;
}

std::string EchoJson(const nlohmann::json& value) {
  if (value.is_string()) return "\"" + Echo(value.get_ref<const std::string&>()) + "\"";
  if (value.is_array())
    return "an array of " + std::to_string(value.size()) +
           (value.size() == 1 ? " element" : " elements");
  if (value.is_object())
    return "an object of " + std::to_string(value.size()) +
           (value.size() == 1 ? " member" : " members");
  if (value.is_binary()) return "binary data";
  return value.dump();  // a number, true, false or null: short, and JSON has no control bytes
}

}  // namespace menutool
