// The atomic replace of the Windows backend, shared by ReplaceFile and CopyFile.
#ifndef TOLVEX_PLATFORM_WIN32_WIN32REPLACE_H
#define TOLVEX_PLATFORM_WIN32_WIN32REPLACE_H

#include <cstdint>
#include <string>

#include "platform/Os.h"
#include "platform/Status.h"

namespace tolvex::platform::win32 {

// Replaces `target` with what `content` writes. The new file takes `attributes` (FILE_
// ATTRIBUTE_* bits) when given; otherwise an existing file's attributes, or none for a new
// file.
Status ReplaceAtomically(const std::string& target, const os::ContentSource& content,
                         const uint32_t* attributes);

}  // namespace tolvex::platform::win32

#endif  // TOLVEX_PLATFORM_WIN32_WIN32REPLACE_H
