// Stand-ins for CreateMenuBmp, CreateMaskMenuBmp and ImageResize, linked into the tests in
// place of the rendering libraries. Each call keeps what it received and returns `result`; a
// rendering call also writes `recordName` under its key ("OutputBmp" or "OutMask", section
// "Background") of the template it received, then overwrites the path buffer, as it may.
#ifndef TOLVEX_TESTS_RENDER_RENDERDOUBLE_H
#define TOLVEX_TESTS_RENDER_RENDERDOUBLE_H

#include <string>

namespace tolvex::test {

struct RenderDouble {
  int result = 0;
  std::string recordName;  // none when empty
  std::string received;  // the path; for ImageResize "source|target|width|height"
};

extern RenderDouble menuBmpDouble, maskDouble, resizeDouble;

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_RENDER_RENDERDOUBLE_H
