// How template texts travel in JSON. The library's texts are code page 1252 bytes; JSON
// holds Unicode. `show --json` decodes every byte to its character (the five bytes the code
// page leaves undefined, 0x81 0x8D 0x8F 0x90 0x9D, to the control characters of the same
// value, as Windows does), and `apply` encodes each character back to its one byte, refusing a
// character the code page lacks rather than guessing. So every byte survives the round trip.
// Pure functions.
#ifndef TOLVEX_TOOLS_JSONTEXT_H
#define TOLVEX_TOOLS_JSONTEXT_H

#include <optional>
#include <string>

namespace menutool {

// Code page 1252 bytes as UTF-8.
std::string Utf8FromCp1252(const std::string& bytes);

// UTF-8 text (valid, as the JSON parser leaves it) as code page 1252 bytes; nullopt, with
// `why` naming the first character that has no byte, when there is one.
std::optional<std::string> Cp1252FromUtf8(const std::string& utf8, std::string* why);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_JSONTEXT_H
