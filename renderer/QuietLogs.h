// Keeps the libraries we draw with from printing: the renderers report through their result
// only. Process-wide, installed once, thread-safe.
#ifndef TOLVEX_RENDERER_QUIETLOGS_H
#define TOLVEX_RENDERER_QUIETLOGS_H

namespace tolvex::render {

// Drops the messages, warnings and criticals that GdkPixbuf, Pango and GLib-GObject would write
// to stderr. Errors (which abort) are left alone. Call at every entry point; only the first
// call does anything.
void QuietLibraryLogs();

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_QUIETLOGS_H
