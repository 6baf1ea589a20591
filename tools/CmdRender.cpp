// The render command: checks the page first and refuses one with errors (printing check's
// findings) unless forced; has the rendering libraries draw the menu picture and its mask
// through CMenuTemplate::CreateMenuBMP and CreateMaskBMP, prints where they are, and on request
// writes a preview PNG. The renderer may record the picture names in the template when it has
// none.
#include "tools/Commands.h"
#include "tools/Preview.h"
#include "tools/TemplatePath.h"
#include "tools/ToolError.h"

#include <tolvex/MenuTemplate.h>

#include <iostream>
#include <sstream>

namespace menutool {

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
  if (picture.empty()) throw ToolError(file, "the menu picture could not be rendered");
  std::string mask = menu.CreateMaskBMP().GetString();
  if (mask.empty()) throw ToolError(file, "the mask could not be rendered");

  std::cout << "menu: " << path.Resolve(picture) << "\n";
  std::cout << "mask: " << path.Resolve(mask) << "\n";
  if (!preview.empty()) {
    int areas = WritePreview(path.Resolve(picture), path.Resolve(mask), preview);
    std::cout << "preview: " << preview << " (" << areas << " button areas)\n";
  }
  return kExitOk;
}

}  // namespace menutool
