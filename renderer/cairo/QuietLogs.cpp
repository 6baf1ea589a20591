// Keeps glib, gdk-pixbuf and pango from printing.
#include "renderer/QuietLogs.h"

#include <glib.h>

#include <mutex>

namespace tolvex::render {
namespace {

void Drop(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

}  // namespace

void QuietLibraryLogs() {
  static std::once_flag once;
  std::call_once(once, [] {
    // Per domain, so that the host application's own messages still reach its handlers.
    // These libraries log through g_log, which consults these handlers first.
    const auto levels = static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING |
                                                    G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_INFO |
                                                    G_LOG_LEVEL_DEBUG);
    for (const char* domain : {"GdkPixbuf", "Pango", "GLib-GObject", "GModule"}) {
      g_log_set_handler(domain, levels, Drop, nullptr);
    }
  });
}

}  // namespace tolvex::render
