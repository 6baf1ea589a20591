// Stand-ins for the rendering libraries' CreateMenuBmp, CreateMaskMenuBmp and ImageResize,
// linked into the render tests in their place. Each test sets what the next call returns and
// what it does to the template file, and reads back what the call received. Single-threaded.
#ifndef TOLVEX_TESTS_RENDER_RENDERDOUBLE_H
#define TOLVEX_TESTS_RENDER_RENDERDOUBLE_H

#include <optional>
#include <string>

namespace tolvex::test {

// One rendering function: CreateMenuBmp or CreateMaskMenuBmp.
struct RenderDouble {
  // What the test arranges.
  int result = 0;
  // Written under the output key ("OutputBmp" or "OutMask", section "Background") of the
  // template the call receives, before it returns, as the real renderer records its picture.
  std::optional<std::string> recordName;
  // Overwrite the path buffer received, after reading it.
  bool scribbleOnPath = false;

  // What the calls received.
  int calls = 0;
  std::string lastPath;
};

struct ResizeDouble {
  int result = 0;

  int calls = 0;
  std::string source;
  std::string target;
  int width = 0;
  int height = 0;
};

RenderDouble& MenuBmpDouble();  // CreateMenuBmp, key "OutputBmp"
RenderDouble& MaskDouble();     // CreateMaskMenuBmp, key "OutMask"
ResizeDouble& ImageResizeDouble();

// Back to the defaults: every call fails and records nothing.
void ResetRenderDoubles();

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDER_RENDERDOUBLE_H
