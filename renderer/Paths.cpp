// File names as the template uses them: the template's folder, names relative to it, and the
// default output names derived from the template's own name.
#include "renderer/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace tolvex::render {
namespace {

// Where the profile functions keep a template given by a bare file name (see the README):
// the pictures beside it are looked for there too. The rule is the profile library's, which
// does not export it; it is short and documented, so we follow it here.
std::string ProfileFolder() {
  if (const char* own = std::getenv("TOLVEX_PROFILE_DIR"); own && *own) return own;
  if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && config[0] == '/') {
    return std::string(config) + "/tolvex";
  }
  std::string home;
  if (const char* env = std::getenv("HOME"); env && *env) {
    home = env;
  } else {
    passwd entry{};
    passwd* user = nullptr;
    char buffer[4096];
    if (getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &user) == 0 && user && user->pw_dir) {
      home = user->pw_dir;
    }
  }
  return home + "/.config/tolvex";
}

}  // namespace

std::string TemplateFolder(const std::string& templatePath) {
  if (templatePath.find_first_of("/\\") == std::string::npos) return ProfileFolder();
  const auto slash = templatePath.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return templatePath.substr(0, slash);
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

}  // namespace tolvex::render
