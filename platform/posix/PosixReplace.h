// The atomic replace of the POSIX backend, shared by ReplaceFile and CopyFile.
#ifndef TOLVEX_PLATFORM_POSIX_POSIXREPLACE_H
#define TOLVEX_PLATFORM_POSIX_POSIXREPLACE_H

#include <sys/types.h>

#include <string>
#include <string_view>

#include "platform/Os.h"
#include "platform/Status.h"

namespace tolvex::platform::posix {

// Replaces `target` with `bytes`. The new file takes `mode` when it is given; otherwise an
// existing file's mode, owner and group, or for a new file the default mode (0666 less the
// umask).
Status ReplaceAtomically(const std::string& target, std::string_view bytes, const mode_t* mode);
// The same with the content written as `content` produces it.
Status ReplaceAtomically(const std::string& target, const os::ContentSource& content,
                         const mode_t* mode);

}  // namespace tolvex::platform::posix

#endif  // TOLVEX_PLATFORM_POSIX_POSIXREPLACE_H
