// Where a renderer writes its picture, and recording the default name in the template.
#include "renderer/OutputName.h"

#include <tolvex/Profile.h>

#include "renderer/Failure.h"
#include "renderer/Paths.h"

namespace tolvex::render {

OutputName ResolveOutput(const TemplateFile& file, const char* key, const char* suffix) {
  const std::string& templatePath = file.path();
  const std::string folder = TemplateFolder(templatePath);
  const auto named = file.Text("Background", key);
  if (named && !named->empty()) return OutputName{ResolveIn(folder, *named), std::string()};
  const std::string fallback = TemplateStem(templatePath) + suffix;
  return OutputName{ResolveIn(folder, fallback), fallback};
}

Status RecordOutput(const std::string& templatePath, const char* key, const OutputName& name) {
  if (name.toRecord.empty()) return Status::kOk;
  if (!WritePrivateProfileStringA("Background", key, name.toRecord.c_str(), templatePath.c_str())) {
    return Fail(Status::kRecordFailed,
                std::string("cannot record ") + key + " in template " + templatePath);
  }
  return Status::kOk;
}

}  // namespace tolvex::render
