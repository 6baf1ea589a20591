// The profile folder on POSIX systems, from the environment and the user database.
// Stateless; reads the environment, as every caller of getenv does.
#include "platform/ProfileFolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace tolvex::platform {
namespace {

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home && *home) return home;
  std::vector<char> buffer(16384);
  struct passwd entry;
  struct passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
      found->pw_dir)
    return found->pw_dir;
  return "/";
}

}  // namespace

std::string ProfileFolder() {
  const char* own = std::getenv("TOLVEX_PROFILE_DIR");
  if (own && *own) return own;
  // The XDG base-directory rules ignore a relative XDG_CONFIG_HOME.
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config && config[0] == '/') return std::string(config) + "/tolvex";
  return HomeFolder() + "/.config/tolvex";
}

}  // namespace tolvex::platform
