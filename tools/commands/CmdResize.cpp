// The resize command: scales a picture through CMenuTemplate::ResizeImage (the renderer's
// ImageResize), which takes the target's format from its extension; a failure says why, as the
// rendering library tells it.
#include "tools/cli/Commands.h"
#include "tools/cli/ToolError.h"

#include "platform/Os.h"

#include <tolvex/MenuBmp.h>
#include <tolvex/MenuTemplate.h>

namespace menutool {

int RunResize(const std::string& source, const std::string& target, unsigned width,
              unsigned height) {
  if (!tolvex::platform::os::CheckReadable(source).ok()) throw ToolError(source, "no such picture");
  CMenuTemplate menu;
  if (!menu.ResizeImage(CString(source.c_str()), CString(target.c_str()), width, height))
    throw ToolError(source, "cannot resize to " + std::to_string(width) + "x" +
                                std::to_string(height) + " into " + target + ": " +
                                TolvexMenuBmpLastError());
  return kExitOk;
}

}  // namespace menutool
