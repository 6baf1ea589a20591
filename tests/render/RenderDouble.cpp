// The stand-ins of RenderDouble.h. Including the real headers keeps the signatures in step
// with the libraries they replace.
#include "render/RenderDouble.h"

#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/Profile.h>

#include <cstring>

namespace tolvex::test {

RenderDouble menuBmpDouble, maskDouble, resizeDouble;

static int Render(RenderDouble& state, const char* key, char* path) {
  state.received = path;
  if (!state.recordName.empty())
    WritePrivateProfileStringA("Background", key, state.recordName.c_str(), path);
  std::memset(path, '#', std::strlen(path));
  return state.result;
}

}  // namespace tolvex::test

using namespace tolvex::test;

extern "C" int CreateMenuBmp(char* path) { return Render(menuBmpDouble, "OutputBmp", path); }
extern "C" int CreateMaskMenuBmp(char* path) { return Render(maskDouble, "OutMask", path); }

extern "C" int ImageResize(char* source, char* target, int width, int height) {
  resizeDouble.received = std::string(source) + "|" + target + "|" + std::to_string(width) +
                          "|" + std::to_string(height);
  return resizeDouble.result;
}
