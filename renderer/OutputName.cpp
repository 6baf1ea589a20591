// Where a renderer writes its picture, writing it, and recording the default name in the
// template.
#include "renderer/OutputName.h"

#include <tolvex/Profile.h>

#include <cerrno>

#include "keys/PageKeys.h"
#include "platform/Os.h"
#include "renderer/Failure.h"
#include "renderer/Paths.h"

namespace tolvex::render {

OutputName ResolveOutput(const TemplateFile& file, const char* key, const char* suffix) {
  const std::string& templatePath = file.path();
  const std::string folder = TemplateFolder(templatePath);
  const auto named = file.Text(background::kSection, key);
  if (named && !named->empty()) return OutputName{ResolveIn(folder, *named), std::string()};
  const std::string fallback = TemplateStem(templatePath) + suffix;
  return OutputName{ResolveIn(folder, fallback), fallback};
}

Status WriteOutput(const std::string& path, const std::string& bytes) {
  if (path.empty()) return Fail(Status::kOutputUnwritable, "no output named");
  const int error = TolvexReplaceFile(path.c_str(), bytes.data(), bytes.size());
  if (error == 0) return Status::kOk;
  const std::string what = "cannot write output " + path;
  platform::os::FileStamp stamp;
  const bool exists = platform::os::StampFile(path, &stamp).ok();
  if (error == EISDIR) return Fail(Status::kOutputUnwritable, what + ": it is a folder");
  if (error == EINVAL && exists)
    return Fail(Status::kOutputUnwritable, what + ": not a regular file");
  if (error == EACCES && exists && stamp.readOnly)
    return Fail(Status::kOutputUnwritable, what + ": the file is read-only");
  return FailErrno(Status::kOutputUnwritable, what, error);
}

Status RecordOutput(const std::string& templatePath, const char* key, const OutputName& name) {
  if (name.toRecord.empty()) return Status::kOk;
  if (!WritePrivateProfileStringA(background::kSection, key, name.toRecord.c_str(),
                                  templatePath.c_str())) {
    return Fail(Status::kRecordFailed,
                std::string("cannot record ") + key + " in template " + templatePath);
  }
  return Status::kOk;
}

}  // namespace tolvex::render
