// Small path helpers shared by the POSIX backend files. Pure string functions.
#ifndef TOLVEX_PLATFORM_POSIX_POSIXPATHS_H
#define TOLVEX_PLATFORM_POSIX_POSIXPATHS_H

#include <string>

namespace tolvex::platform::posix {

// The folder part of `file`: "." when it has none, "/" for a file in the root.
std::string FolderOf(const std::string& file);
// The last component of `file`.
std::string BaseNameOf(const std::string& file);

}  // namespace tolvex::platform::posix

#endif  // TOLVEX_PLATFORM_POSIX_POSIXPATHS_H
