// Naming of template files and of the files a template refers to (see TemplatePath.h).
#include "tools/page/TemplatePath.h"

#include "tools/cli/ToolError.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace menutool {

namespace fs = std::filesystem;

std::string LibraryPath(const std::string& path) {
  if (path.empty() || path.find('/') != std::string::npos) return path;
  return "./" + path;
}

TemplatePath::TemplatePath(std::string given) : m_given(std::move(given)) {
  if (m_given.empty()) throw ToolError("", "the template file name is empty");
  m_path = LibraryPath(m_given);
  std::string parent = fs::path(m_path).parent_path().string();
  m_folder = parent.empty() ? "/" : parent;  // only "/name" has an empty parent here
}

std::string TemplatePath::Resolve(const std::string& name) const {
  if (name.empty() || name[0] == '/') return name;
  return (fs::path(m_folder) / name).lexically_normal().string();
}

void TemplatePath::RequireReadable() const {
  std::error_code ec;
  fs::file_status status = fs::status(m_path, ec);
  if (!fs::exists(status)) throw ToolError(m_given, "no such template file");
  if (!fs::is_regular_file(status)) throw ToolError(m_given, "not a regular file");
  if (access(m_path.c_str(), R_OK) != 0)
    throw ToolError(m_given, std::string("cannot read: ") + std::strerror(errno));
}

void TemplatePath::RequireWritable() const {
  RequireReadable();
  // A file without write permission bits is read-only for everyone, root included, as the
  // profile functions treat it.
  struct stat info {};
  if (stat(m_path.c_str(), &info) == 0 && (info.st_mode & 0222) == 0)
    throw ToolError(m_given, "cannot write: the file is read-only");
  if (access(m_path.c_str(), W_OK) != 0)
    throw ToolError(m_given, std::string("cannot write: ") + std::strerror(errno));
}

}  // namespace menutool
