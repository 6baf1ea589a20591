// How the tool repeats, in a message, text that came from a user's file: a property name, a
// value, a font or picture name. What it prints stays one short line whatever the input holds:
// control characters (ESC, CR, LF, ...) are shown escaped, so no input can move the cursor,
// recolour the terminal or start a line of its own, and long texts and large JSON values are
// cut or described rather than printed whole. Pure functions.
#ifndef TOLVEX_TOOLS_ECHO_H
#define TOLVEX_TOOLS_ECHO_H

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace menutool {

// The longest piece of an input that a message repeats, in bytes.
inline constexpr std::size_t kEchoLength = 60;

// `text` with control characters escaped (\n, \r, \t, \e, \xHH), cut after `limit` bytes
// (never inside a UTF-8 character) with "..." added when something was left out.
std::string Echo(std::string_view text, std::size_t limit = kEchoLength);

// A JSON value for a message: numbers, booleans and null as JSON writes them, strings quoted
// and echoed, arrays and objects by their size ("an array of 3 elements").
std::string EchoJson(const nlohmann::json& value);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_ECHO_H
