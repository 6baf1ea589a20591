// Fuzz target of `menutemplate show --json`: any template file shown as JSON. The output must
// be one valid JSON document with the page's parts, and the file must be left byte for byte.
// When the tool learns to take JSON back (apply), its reading of this output belongs here too.
//
// Input: the template file's bytes.
#include <nlohmann/json.hpp>

#include <iostream>
#include <sstream>

#include "fuzz/FuzzInput.h"
#include "tools/cli/Commands.h"
#include "tools/cli/ToolError.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tolvex::fuzz;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string path = ScratchFolder() + "/show.ini";
  WriteBytes(path, bytes);

  std::ostringstream out;
  std::streambuf* saved = std::cout.rdbuf(out.rdbuf());
  int status = -1;
  try {
    status = menutool::RunShow(path, true);
  } catch (const menutool::ToolError&) {
  }
  std::cout.rdbuf(saved);

  Check(ReadBytes(path) == bytes, "show changed the template file");
  if (status != 0) return 0;
  const nlohmann::json shown = nlohmann::json::parse(out.str(), nullptr, false);
  Check(!shown.is_discarded(), "show --json wrote invalid JSON");
  Check(shown.contains("page") && shown.contains("layouts"), "show --json lacks the page");
  return 0;
}
