// The folder where a profile given by a bare file name lives: the "Windows folder" of the
// Win32 profile functions. One rule, compiled into every library that resolves such names
// (the profile functions and the rendering libraries), so that they always agree.
#ifndef TOLVEX_PLATFORM_PROFILEFOLDER_H
#define TOLVEX_PLATFORM_PROFILEFOLDER_H

#include <string>

namespace tolvex::platform {

// $TOLVEX_PROFILE_DIR, else $XDG_CONFIG_HOME/tolvex, else ~/.config/tolvex. Not created here.
std::string ProfileFolder();

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_PROFILEFOLDER_H
