// Fuzz target of `menutemplate apply`: any document applied to a page that `new` wrote. The
// document is the untrusted part, so whatever its depth, size, names or values, apply must
// return or refuse it with a ToolError, never crash, and a refused document must leave the
// template byte for byte.
//
// Input: the document's bytes (the CHANGES file).
#include <iostream>
#include <sstream>

#include "fuzz/FuzzInput.h"
#include "tools/cli/Commands.h"
#include "tools/cli/ToolError.h"

namespace {

// The page every input is applied to, written once by `new`.
const std::string& BasePage() {
  static const std::string bytes = [] {
    menutool::NewOptions options;
    options.file = tolvex::fuzz::ScratchFolder() + "/base.ini";
    options.buttons = 2;
    options.max = 3;
    options.nav = true;
    menutool::RunNew(options);
    return tolvex::fuzz::ReadBytes(options.file).value_or("");
  }();
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tolvex::fuzz;
  const std::string& base = BasePage();
  Check(!base.empty(), "new wrote no page");
  const std::string page = ScratchFolder() + "/apply.ini";
  const std::string changes = ScratchFolder() + "/changes.json";
  WriteBytes(page, base);
  WriteBytes(changes, std::string_view(reinterpret_cast<const char*>(data), size));

  // Warnings go to the standard error; they are not what is tested.
  std::ostringstream warnings;
  std::streambuf* saved = std::cerr.rdbuf(warnings.rdbuf());
  bool refused = false;
  try {
    Check(menutool::RunApply(page, changes) == menutool::kExitOk, "apply gave a status but 0");
  } catch (const menutool::ToolError& error) {
    refused = true;
    const std::string message = error.what();
    Check(message.size() < 1000, "a refusal repeats too much of the document");
    Check(message.find_first_of("\n\r\x1b") == std::string::npos,
          "a refusal holds a control character");
  }
  std::cerr.rdbuf(saved);
  if (refused) Check(ReadBytes(page) == base, "a refused document changed the template");
  return 0;
}
