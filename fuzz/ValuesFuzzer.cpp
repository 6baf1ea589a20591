// Fuzz target of the tool's values: any word parsed as each kind of property value. A word
// that is taken must print back to a word that parses to the same value, stay in its kind's
// range, and give JSON that reads back as that value; a refused word must say why.
//
// Input: one byte choosing the kind, then the word.
#include <nlohmann/json.hpp>

#include <cstdint>

#include "fuzz/FuzzInput.h"
#include "tools/page/Values.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tolvex::fuzz;
  using menutool::Kind;
  using nlohmann::json;
  FuzzInput input(data, size);
  const auto kind = static_cast<Kind>(input.Byte() % 5);
  const std::string word = input.Rest();

  std::string why;
  const std::optional<menutool::Value> value = menutool::ParseValue(kind, word, &why);
  if (!value) {
    Check(!why.empty(), "a refused word gives no reason");
    return 0;
  }
  if (kind == Kind::kInt) Check(value->number >= INT32_MIN && value->number <= INT32_MAX, "int range");
  if (kind == Kind::kUInt) Check(value->number >= 0 && value->number <= UINT32_MAX, "uint range");
  if (kind == Kind::kFlag || kind == Kind::kMode) Check(value->number == 0 || value->number == 1, "flag");

  std::string again;
  const auto reparsed = menutool::ParseValue(kind, menutool::FormatValue(kind, *value), &again);
  Check(reparsed && reparsed->number == value->number && reparsed->text == value->text,
        "a printed value does not parse back to itself");

  // The JSON as show --json writes it must always be valid JSON. Text that is not UTF-8 is
  // replaced there, so only UTF-8 text is required to come back unchanged.
  const json j = menutool::ValueToJson(kind, *value);
  const json back = json::parse(j.dump(-1, ' ', false, json::error_handler_t::replace));
  bool utf8 = true;
  try {
    (void)j.dump();
  } catch (const json::type_error&) {
    utf8 = false;
  }
  if (utf8) Check(back == j, "a value's JSON does not read back");
  return 0;
}
