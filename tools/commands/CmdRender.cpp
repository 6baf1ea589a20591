// The render command: checks the page first and refuses one with errors (printing check's
// findings) unless forced; has the rendering libraries draw the menu picture and its mask
// through CMenuTemplate::CreateMenuBMP and CreateMaskBMP, prints where they are, and on request
// writes a preview PNG. The renderer may record the picture names in the template when it has
// none.
#include "tools/cli/Commands.h"
#include "tools/preview/Preview.h"
#include "tools/page/TemplatePath.h"
#include "tools/cli/ToolError.h"

#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/MenuTemplate.h>

#include <iostream>
#include <sstream>

namespace menutool {
namespace {

// "the mask could not be rendered: <reason>", with the rendering library's reason for its last
// failure on this thread. CreateMenuBMP also fails, without a reason, when the picture was
// made but the template names no output.
std::string Failed(const char* what, const char* reason) {
  std::string message = std::string(what) + " could not be rendered";
  if (reason && *reason) return message + ": " + reason;
  return message + " (or the template names no output for it)";
}

}  // namespace

int RunRender(const std::string& file, const std::string& preview, bool force) {
  TemplatePath path(file);
  path.RequireReadable();
  std::ostringstream findings;
  int errors = 0;
  CheckTemplate(file, findings, &errors);
  if (errors) {
    std::cout << findings.str();
    if (!force)
      throw ToolError(file, std::to_string(errors) + (errors == 1 ? " error" : " errors") +
                                " found by check; not rendered (--force renders all the same)");
  }
  CMenuTemplate menu{CString(path.library().c_str())};
  std::string picture = menu.CreateMenuBMP().GetString();
  if (picture.empty()) throw ToolError(file, Failed("the menu picture", TolvexMenuBmpLastError()));
  std::string mask = menu.CreateMaskBMP().GetString();
  if (mask.empty()) throw ToolError(file, Failed("the mask", TolvexMenuMaskLastError()));

  std::cout << "menu: " << path.Resolve(picture) << "\n";
  std::cout << "mask: " << path.Resolve(mask) << "\n";
  if (!preview.empty()) {
    int areas = WritePreview(path.Resolve(picture), path.Resolve(mask), preview);
    std::cout << "preview: " << preview << " (" << areas << " button areas)\n";
  }
  return kExitOk;
}

}  // namespace menutool
