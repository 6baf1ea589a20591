// File names as the template uses them: the template's folder, names relative to it, and the
// default output names derived from the template's own name.
#include "renderer/Paths.h"

#include "platform/ProfileFolder.h"

namespace tolvex::render {

std::string TemplateFolder(const std::string& templatePath) {
  if (templatePath.find_first_of("/\\") == std::string::npos) return platform::ProfileFolder();
  const auto slash = templatePath.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return templatePath.substr(0, slash);
}

std::string TemplateOnDisk(const std::string& templatePath) {
  if (templatePath.find_first_of("/\\") != std::string::npos) return templatePath;
  return ResolveIn(platform::ProfileFolder(), templatePath);
}

std::string ResolveIn(const std::string& folder, const std::string& name) {
  if (name.empty() || name[0] == '/') return name;
  if (folder == "/") return "/" + name;
  return folder + "/" + name;
}

std::string TemplateStem(const std::string& templatePath) {
  const auto slash = templatePath.find_last_of('/');
  std::string base = slash == std::string::npos ? templatePath : templatePath.substr(slash + 1);
  const auto dot = base.find_last_of('.');
  // A leading dot starts a hidden name, not an extension.
  if (dot != std::string::npos && dot != 0) base.erase(dot);
  return base;
}

std::string ExtensionOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  const auto dot = path.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
  std::string extension = path.substr(dot + 1);
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return extension;
}

}  // namespace tolvex::render
