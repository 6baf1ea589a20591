// GDI+ reports through status values and never prints: there is nothing to quiet.
#include "renderer/QuietLogs.h"

namespace tolvex::render {

void QuietLibraryLogs() {}

}  // namespace tolvex::render
