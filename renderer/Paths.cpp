// File names as the template uses them: the template's folder, names relative to it, and the
// default output names derived from the template's own name. Separators and absolute names
// are spelt as the system spells them (platform/Os.h).
#include "renderer/Paths.h"

#include "platform/Os.h"
#include "platform/ProfileFolder.h"

namespace tolvex::render {

namespace os = platform::os;

std::string TemplateFolder(const std::string& templatePath) {
  if (templatePath.find_first_of("/\\") == std::string::npos) return platform::ProfileFolder();
  return os::FolderOf(templatePath);
}

std::string TemplateOnDisk(const std::string& templatePath) {
  if (templatePath.find_first_of("/\\") != std::string::npos) return templatePath;
  return ResolveIn(platform::ProfileFolder(), templatePath);
}

std::string ResolveIn(const std::string& folder, const std::string& name) {
  if (name.empty() || os::IsAbsolutePath(name)) return name;
  if (!folder.empty() && os::LastSeparator(folder) == folder.size() - 1) return folder + name;
  return folder + "/" + name;
}

std::string TemplateStem(const std::string& templatePath) {
  std::string base = os::BaseNameOf(templatePath);
  const auto dot = base.find_last_of('.');
  // A leading dot starts a hidden name, not an extension.
  if (dot != std::string::npos && dot != 0) base.erase(dot);
  return base;
}

std::string ExtensionOf(const std::string& path) {
  const std::string base = os::BaseNameOf(path);
  const auto dot = base.find_last_of('.');
  if (dot == std::string::npos) return {};
  std::string extension = base.substr(dot + 1);
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return extension;
}

}  // namespace tolvex::render
