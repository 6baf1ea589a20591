// Path helpers of the Windows backend: both separators, drive roots, and the conversion of
// the ANSI-code-page paths of the A functions to the UTF-16 paths of the W calls. Pure
// functions.
#ifndef TOLVEX_PLATFORM_WIN32_WIN32PATHS_H
#define TOLVEX_PLATFORM_WIN32_WIN32PATHS_H

#include <string>

namespace tolvex::platform::win32 {

// The folder part of `file`: "." when it has none, the root ("\", "C:\", "C:") for a file in
// a root.
std::string FolderOf(const std::string& file);
// The last component of `file`.
std::string BaseNameOf(const std::string& file);
// `path` (bytes of the ANSI code page, as the A functions take them) in UTF-16.
std::wstring Wide(const std::string& path);

}  // namespace tolvex::platform::win32

#endif  // TOLVEX_PLATFORM_WIN32_WIN32PATHS_H
