// The exported function of libTolvex_MenuMask: CreateMaskMenuBmp renders a template's DVD
// highlight mask; TolvexMenuMaskLastError tells why its last call failed. Status collapses to
// 0/1 and a reason here; no exception passes this boundary.
#include <tolvex/MenuMask.h>

#include <new>
#include <string>

#include "keys/PageKeys.h"
#include "renderer/BmpWriter.h"
#include "renderer/Failure.h"
#include "renderer/MaskPainter.h"
#include "renderer/OutputGuard.h"
#include "renderer/OutputName.h"
#include "renderer/QuietLogs.h"
#include "renderer/TemplateReader.h"

namespace tolvex::render {
namespace {

Status RenderMask(const std::string& templatePath) {
  TemplateFile file;
  if (const Status s = TemplateFile::Load(templatePath, &file); s != Status::kOk) return s;
  Page page;
  if (const Status s = ReadPage(file, &page); s != Status::kOk) return s;
  const OutputName output = ResolveOutput(file, background::kOutMask.keys[0], "_mask.bmp");
  const OutputName menu = ResolveOutput(file, background::kOutputBmp.keys[0], ".bmp");
  if (const Status s = CheckOutputIsNoInput(output.path, file, page, menu.path);
      s != Status::kOk) {
    return s;
  }
  if (const Status s = CheckOutputIsOurs(output.path); s != Status::kOk) return s;

  const std::vector<uint8_t> rgb = PaintMask(page);
  const std::string bytes =
      EncodeBmp24(PixelRows{page.width, page.height, rgb.data(),
                            static_cast<ptrdiff_t>(page.width) * 3, PixelLayout::kRgb});
  if (bytes.empty()) return Fail(Status::kDrawingFailed, "cannot encode " + output.path);
  if (const Status s = WriteOutput(output.path, bytes); s != Status::kOk) return s;
  return RecordOutput(templatePath, background::kOutMask.keys[0], output);
}

// The reason of this library's last call on each thread, for TolvexMenuMaskLastError.
thread_local std::string t_lastError;

}  // namespace
}  // namespace tolvex::render

extern "C" int CreateMaskMenuBmp(char* templateFile) {
  using namespace tolvex::render;
  try {
    QuietLibraryLogs();
    ClearFailure();
    const Status status = templateFile == nullptr || *templateFile == '\0'
                              ? Fail(Status::kBadArgument, "no template file named")
                              : RenderMask(templateFile);
    t_lastError = FailureReason(status);
    return status == Status::kOk ? 1 : 0;
  } catch (const std::bad_alloc&) {
    t_lastError = "out of memory";
  } catch (...) {
    t_lastError = "internal error";
  }
  return 0;
}

extern "C" const char* TolvexMenuMaskLastError(void) {
  return tolvex::render::t_lastError.c_str();
}
