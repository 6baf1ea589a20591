// Parsing and printing of property values (see Values.h).
#include "tools/page/Values.h"

#include "tools/cli/Echo.h"
#include "tools/page/JsonText.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace menutool {
namespace {

// Whole-word decimal integer within [lo, hi]. strtoll alone would accept blanks, "12abc" and
// a leading "+"; the library's atoi would accept even more, so we are strict here instead.
std::optional<long long> ParseInteger(const std::string& word, long long lo, long long hi,
                                      std::string* why) {
  std::size_t digits = (!word.empty() && word[0] == '-') ? 1 : 0;
  if (word.size() == digits || word.find_first_not_of("0123456789", digits) != std::string::npos) {
    *why = "'" + Echo(word) + "' is not a number";
    return std::nullopt;
  }
  errno = 0;
  long long n = std::strtoll(word.c_str(), nullptr, 10);
  if (errno == ERANGE || n < lo || n > hi) {
    *why = "'" + Echo(word) + "' is out of range (" + std::to_string(lo) + ".." + std::to_string(hi) +
           ")";
    return std::nullopt;
  }
  return n;
}

std::optional<long long> ParseFlag(const std::string& word, std::string* why) {
  for (const char* yes : {"yes", "true", "on", "1"})
    if (word == yes) return 1;
  for (const char* no : {"no", "false", "off", "0"})
    if (word == no) return 0;
  *why = "'" + Echo(word) + "' is not yes or no";
  return std::nullopt;
}

}  // namespace

const char kNotOneLine[] = "a line break (CR or LF) or NUL character cannot be part of a value";

bool IsOneLine(const std::string& text) {
  return text.find_first_of(std::string("\r\n\0", 3)) == std::string::npos;
}

std::optional<Value> ParseValue(Kind kind, const std::string& word, std::string* why) {
  Value value;
  std::optional<long long> number;
  switch (kind) {
    case Kind::kText:
      // The library writes a value as one line of the file, as Windows does: a line break
      // would end the value there and make the rest a key of its own.
      if (!IsOneLine(word)) {
        *why = kNotOneLine;
        return std::nullopt;
      }
      value.text = word;
      return value;
    case Kind::kInt:
      number = ParseInteger(word, INT32_MIN, INT32_MAX, why);
      break;
    case Kind::kUInt:
      number = ParseInteger(word, 0, UINT32_MAX, why);
      break;
    case Kind::kFlag:
      number = ParseFlag(word, why);
      break;
    case Kind::kMode:
      if (word == "ntsc" || word == "NTSC") number = 1;
      else if (word == "pal" || word == "PAL") number = 0;
      else *why = "'" + Echo(word) + "' is neither ntsc nor pal";
      break;
  }
  if (!number) return std::nullopt;
  value.number = *number;
  return value;
}

std::string FormatValue(Kind kind, const Value& value) {
  switch (kind) {
    case Kind::kText:
      return value.text;
    case Kind::kFlag:
      return value.number ? "yes" : "no";
    case Kind::kMode:
      return value.number ? "ntsc" : "pal";
    case Kind::kInt:
    case Kind::kUInt:
      break;
  }
  return std::to_string(value.number);
}

nlohmann::json ValueToJson(Kind kind, const Value& value) {
  switch (kind) {
    case Kind::kText:
      return Utf8FromCp1252(value.text);
    case Kind::kFlag:
      return value.number != 0;
    case Kind::kMode:
      return value.number ? "ntsc" : "pal";
    case Kind::kInt:
    case Kind::kUInt:
      break;
  }
  return value.number;
}

std::optional<Value> ValueFromJson(Kind kind, const nlohmann::json& json, std::string* why) {
  Value value;
  switch (kind) {
    case Kind::kText: {
      if (!json.is_string()) break;
      std::optional<std::string> bytes = Cp1252FromUtf8(json.get<std::string>(), why);
      if (!bytes) return std::nullopt;
      if (!IsOneLine(*bytes)) {
        *why = kNotOneLine;
        return std::nullopt;
      }
      value.text = std::move(*bytes);
      return value;
    }
    case Kind::kInt:
    case Kind::kUInt: {
      const long long lo = kind == Kind::kInt ? INT32_MIN : 0;
      const long long hi = kind == Kind::kInt ? INT32_MAX : UINT32_MAX;
      if (!json.is_number_integer()) break;
      // An unsigned JSON number above the range of long long is out of range too.
      if (json.is_number_unsigned() && json.get<unsigned long long>() > UINT32_MAX) {
        *why = json.dump() + " is out of range";
        return std::nullopt;
      }
      value.number = json.get<long long>();
      if (value.number < lo || value.number > hi) {
        *why = json.dump() + " is out of range (" + std::to_string(lo) + ".." +
               std::to_string(hi) + ")";
        return std::nullopt;
      }
      return value;
    }
    case Kind::kFlag:
      if (!json.is_boolean()) break;
      value.number = json.get<bool>() ? 1 : 0;
      return value;
    case Kind::kMode:
      if (json == "ntsc" || json == "pal") {
        value.number = json == "ntsc";
        return value;
      }
      break;
  }
  static const char* const expected[] = {"a string", "an integer", "an integer", "true or false",
                                         "\"ntsc\" or \"pal\""};
  *why = EchoJson(json) + " is not " + expected[static_cast<int>(kind)];
  return std::nullopt;
}

const char* KindHint(Kind kind) {
  switch (kind) {
    case Kind::kText: return "text";
    case Kind::kInt: return "integer";
    case Kind::kUInt: return "0..4294967295";
    case Kind::kFlag: return "yes|no";
    case Kind::kMode: return "ntsc|pal";
  }
  return "";
}

}  // namespace menutool
