// The values of template properties as the tool shows and takes them: what kinds there are,
// how a command-line word becomes a value (strictly: "12abc" is refused, where the library's
// reading would take 12), and how a value is printed for people and travels in JSON.
#ifndef TOLVEX_TOOLS_VALUES_H
#define TOLVEX_TOOLS_VALUES_H

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace menutool {

enum class Kind {
  kText,  // file names, titles, font names: taken and shown verbatim
  kInt,   // signed 32-bit (coordinates)
  kUInt,  // unsigned 32-bit (sizes, counts, colour components, navigation values)
  kFlag,  // yes/no; the file holds TRUE/FALSE
  kMode,  // ntsc/pal; the file holds NTSC=TRUE/FALSE
};

// One value of a property. Numbers, flags and the mode live in `number`, texts in `text`.
struct Value {
  long long number = 0;
  std::string text;
};
using Values = std::vector<Value>;

// Whether `text` can be stored as a value: no CR, LF or NUL, which would end the value's line
// in the file (and turn the rest into keys of their own). kNotOneLine says why not.
bool IsOneLine(const std::string& text);
extern const char kNotOneLine[];

// Parses one command-line word as a value of `kind`; nullopt (and `why`) when it is not one.
std::optional<Value> ParseValue(Kind kind, const std::string& word, std::string* why);

// "12", "-5", "yes", "ntsc" or the text itself.
std::string FormatValue(Kind kind, const Value& value);
// As JSON: texts decoded from code page 1252 (see JsonText.h), flags as booleans, the mode as
// "ntsc" or "pal", numbers as numbers.
nlohmann::json ValueToJson(Kind kind, const Value& value);
// The value that ValueToJson printed as `json`; nullopt (and `why`) when `json` is not a value
// of `kind`, or is a text the code page cannot hold or a text with a line break or NUL, which
// the template file cannot keep in one value.
std::optional<Value> ValueFromJson(Kind kind, const nlohmann::json& json, std::string* why);

// What a kind accepts, for the property list: "TEXT", "INT", "0..4294967295", "yes|no"...
const char* KindHint(Kind kind);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_VALUES_H
