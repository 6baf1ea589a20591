// The exported functions of libTolvex_MenuBmp: CreateMenuBmp renders a template's menu picture,
// ImageResize resamples one picture into another file; TolvexMenuBmpLastError tells why the
// last of them failed. Status collapses to 0/1 and a reason here; no exception passes.
#include <tolvex/MenuBmp.h>

#include <new>
#include <string>

#include "keys/PageKeys.h"
#include "renderer/BmpWriter.h"
#include "renderer/Failure.h"
#include "renderer/MenuPainter.h"
#include "renderer/OutputGuard.h"
#include "renderer/OutputName.h"
#include "renderer/Picture.h"
#include "renderer/QuietLogs.h"
#include "renderer/TemplateReader.h"

namespace tolvex::render {
namespace {

Status RenderMenu(const std::string& templatePath) {
  TemplateFile file;
  if (const Status s = TemplateFile::Load(templatePath, &file); s != Status::kOk) return s;
  Page page;
  if (const Status s = ReadPage(file, &page); s != Status::kOk) return s;
  const OutputName output = ResolveOutput(file, background::kOutputBmp.keys[0], ".bmp");
  const OutputName mask = ResolveOutput(file, background::kOutMask.keys[0], "_mask.bmp");
  if (const Status s = CheckOutputIsNoInput(output.path, file, page, mask.path);
      s != Status::kOk) {
    return s;
  }
  if (const Status s = CheckOutputIsOurs(output.path); s != Status::kOk) return s;

  std::unique_ptr<Canvas> canvas;
  if (const Status s = PaintMenu(page, &canvas); s != Status::kOk) return s;
  const std::string bytes = EncodeBmp24(canvas->Rows());
  if (bytes.empty()) return Fail(Status::kDrawingFailed, "cannot encode " + output.path);
  if (const Status s = WriteOutput(output.path, bytes); s != Status::kOk) return s;
  return RecordOutput(templatePath, background::kOutputBmp.keys[0], output);
}

Status Resize(const std::string& source, const std::string& target, int width, int height) {
  if (width <= 0 || height <= 0 ||
      static_cast<int64_t>(width) * height > kMaxPicturePixels) {
    return Fail(Status::kBadArgument, "bad size " + std::to_string(width) + " x " +
                                          std::to_string(height) + " for " + target);
  }
  std::string bytes;
  if (const Status s = EncodeResized(source, width, height, target, &bytes); s != Status::kOk) {
    return s;
  }
  return WriteOutput(target, bytes);
}

// The reason of this library's last call on each thread, for TolvexMenuBmpLastError.
thread_local std::string t_lastError;

// Runs one exported call: a clean reason first, then the call, then its result and reason.
// No exception passes this boundary.
template <typename Call>
int RunExported(Call call) {
  try {
    QuietLibraryLogs();
    ClearFailure();
    const Status status = call();
    t_lastError = FailureReason(status);
    return status == Status::kOk ? 1 : 0;
  } catch (const std::bad_alloc&) {
    t_lastError = "out of memory";
  } catch (...) {
    t_lastError = "internal error";
  }
  return 0;
}

}  // namespace
}  // namespace tolvex::render

extern "C" int CreateMenuBmp(char* templateFile) {
  using namespace tolvex::render;
  return RunExported([&] {
    if (templateFile == nullptr || *templateFile == '\0') {
      return Fail(Status::kBadArgument, "no template file named");
    }
    return RenderMenu(templateFile);
  });
}

extern "C" int ImageResize(char* source, char* target, int width, int height) {
  using namespace tolvex::render;
  return RunExported([&] {
    if (source == nullptr || target == nullptr || *source == '\0' || *target == '\0') {
      return Fail(Status::kBadArgument, "no source or target picture named");
    }
    return Resize(source, target, width, height);
  });
}

extern "C" const char* TolvexMenuBmpLastError(void) {
  return tolvex::render::t_lastError.c_str();
}
