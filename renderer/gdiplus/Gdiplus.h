// The GDI+ headers as the back end includes them, and the one GDI+ session of the process:
// StartGdiplus starts it at the first call from any thread and keeps it until the process
// ends. Never called from DllMain (GdiplusStartup may not be), only from the calls that draw.
#ifndef TOLVEX_RENDERER_GDIPLUS_GDIPLUS_H
#define TOLVEX_RENDERER_GDIPLUS_GDIPLUS_H

// clang-format off
#include <windows.h>
#include <objidl.h>  // IStream, which WIN32_LEAN_AND_MEAN leaves out and gdiplus.h needs
#include <gdiplus.h>
// clang-format on

#include <memory>
#include <string>

namespace tolvex::render {

// Gdiplus::Ok, or why GDI+ cannot be started; at most one start is tried. Thread-safe.
Gdiplus::Status StartGdiplus();

// "GDI+ status 7": a GDI+ status for a reason.
std::string GdiplusStatusText(Gdiplus::Status status);

using BitmapPtr = std::unique_ptr<Gdiplus::Bitmap>;

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_GDIPLUS_GDIPLUS_H
