// The exported function of libTolvex_MenuMask: CreateMaskMenuBmp renders a template's DVD
// highlight mask. Status collapses to 0/1 here and no exception passes this boundary.
#include <tolvex/MenuMask.h>

#include <string>

#include "renderer/AtomicFile.h"
#include "renderer/BmpWriter.h"
#include "renderer/MaskPainter.h"
#include "renderer/OutputName.h"
#include "renderer/QuietLogs.h"
#include "renderer/TemplateReader.h"

namespace tolvex::render {
namespace {

Status RenderMask(const std::string& templatePath) {
  Page page;
  if (const Status s = ReadPage(templatePath, &page); s != Status::kOk) return s;
  const OutputName output = ResolveOutput(templatePath, "OutMask", "_mask.bmp");

  const std::vector<uint8_t> rgb = PaintMask(page);
  const std::string bytes =
      EncodeBmp24(PixelRows{page.width, page.height, rgb.data(),
                            static_cast<ptrdiff_t>(page.width) * 3, PixelLayout::kRgb});
  if (bytes.empty()) return Status::kDrawingFailed;
  if (const Status s = ReplaceFile(output.path, bytes); s != Status::kOk) return s;
  return RecordOutput(templatePath, "OutMask", output);
}

}  // namespace
}  // namespace tolvex::render

extern "C" int CreateMaskMenuBmp(char* templateFile) {
  if (templateFile == nullptr || *templateFile == '\0') return 0;
  try {
    tolvex::render::QuietLibraryLogs();
    return tolvex::render::RenderMask(templateFile) == tolvex::render::Status::kOk ? 1 : 0;
  } catch (...) {
    return 0;
  }
}
