// The rendering functions as the render tests see them: each records its arguments and does
// what the test arranged in RenderDouble.h. Including the real headers keeps the signatures
// in step with the libraries they replace.
#include "render/RenderDouble.h"

#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/Profile.h>

#include <cstring>

namespace tolvex::test {

RenderDouble& MenuBmpDouble() {
  static RenderDouble state;
  return state;
}

RenderDouble& MaskDouble() {
  static RenderDouble state;
  return state;
}

ResizeDouble& ImageResizeDouble() {
  static ResizeDouble state;
  return state;
}

void ResetRenderDoubles() {
  MenuBmpDouble() = RenderDouble();
  MaskDouble() = RenderDouble();
  ImageResizeDouble() = ResizeDouble();
}

namespace {

int Render(RenderDouble& state, const char* key, char* templateFile) {
  ++state.calls;
  state.lastPath = templateFile;
  if (state.recordName)
    WritePrivateProfileStringA("Background", key, state.recordName->c_str(), templateFile);
  if (state.scribbleOnPath) std::memset(templateFile, '#', std::strlen(templateFile));
  return state.result;
}

}  // namespace
}  // namespace tolvex::test

extern "C" int CreateMenuBmp(char* templateFile) {
  return tolvex::test::Render(tolvex::test::MenuBmpDouble(), "OutputBmp", templateFile);
}

extern "C" int CreateMaskMenuBmp(char* templateFile) {
  return tolvex::test::Render(tolvex::test::MaskDouble(), "OutMask", templateFile);
}

extern "C" int ImageResize(char* source, char* target, int width, int height) {
  tolvex::test::ResizeDouble& state = tolvex::test::ImageResizeDouble();
  ++state.calls;
  state.source = source;
  state.target = target;
  state.width = width;
  state.height = height;
  return state.result;
}
