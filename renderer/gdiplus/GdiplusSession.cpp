// The process's GDI+ session. GdiplusShutdown is never called: a DLL cannot call it safely
// when it is unloaded (that runs under the loader lock, like DllMain), and the session's few
// resources go with the process. GDI+ needs no display: it draws into memory bitmaps only.
#include "renderer/gdiplus/Gdiplus.h"

namespace tolvex::render {

Gdiplus::Status StartGdiplus() {
  // A function's static is initialised once, by the first thread that gets here, while the
  // others wait. (std::call_once would do the same, but its state lives in thread-local
  // variables of MinGW's libstdc++ that clang's code cannot reach.)
  static const Gdiplus::Status started = [] {
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr);
  }();
  return started;
}

std::string GdiplusStatusText(Gdiplus::Status status) {
  return "GDI+ status " + std::to_string(static_cast<int>(status));
}

}  // namespace tolvex::render
