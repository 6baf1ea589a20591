// Naming of template files and of the files a template refers to (see TemplatePath.h).
#include "tools/page/TemplatePath.h"

#include "tools/cli/ToolError.h"
#include "tools/io/Reason.h"

#include "platform/Os.h"

#include <filesystem>

namespace menutool {

namespace fs = std::filesystem;
namespace os = tolvex::platform::os;

std::string LibraryPath(const std::string& path) {
  // Any separator (both are on Windows) or a drive ("C:menu.ini") makes a name no bare one.
  if (path.empty() || fs::path(path).has_parent_path() || fs::path(path).has_root_name())
    return path;
  return "./" + path;
}

TemplatePath::TemplatePath(std::string given) : m_given(std::move(given)) {
  if (m_given.empty()) throw ToolError("", "the template file name is empty");
  m_path = LibraryPath(m_given);
  const fs::path path(m_path);
  // Only a file in a root ("/name", "C:\name") has no folder part beyond the root.
  m_folder = path.has_parent_path() ? path.parent_path().string() : path.root_path().string();
  if (m_folder.empty()) m_folder = ".";
}

std::string TemplatePath::Resolve(const std::string& name) const {
  // A name with a root ("/x", and on Windows "C:\x", "\\server\x" and "\x") stays as it is.
  if (name.empty() || fs::path(name).has_root_path()) return name;
  return (fs::path(m_folder) / name).lexically_normal().string();
}

void TemplatePath::RequireReadable() const {
  os::PathInfo info;
  if (!os::LookAt(m_path, &info).ok()) throw ToolError(m_given, "no such template file");
  if (info.kind != os::PathKind::kFile) throw ToolError(m_given, "not a regular file");
  const auto status = os::CheckReadable(m_path);
  if (!status.ok()) throw ToolError(m_given, "cannot read: " + Reason(status));
}

void TemplatePath::RequireWritable() const {
  RequireReadable();
  // A file without write permission bits is read-only for everyone, root included, as the
  // profile functions treat it.
  os::PathInfo info;
  if (os::LookAt(m_path, &info).ok() && info.readOnly)
    throw ToolError(m_given, "cannot write: the file is read-only");
  const auto status = os::CheckWritable(m_path);
  if (!status.ok()) throw ToolError(m_given, "cannot write: " + Reason(status));
}

}  // namespace menutool
