// The one way a whole file is written by the house: the profile functions' own replace
// (posix/PosixReplace.cpp: temporary file, fsync, rename, fsync of the folder, SIGXFSZ
// blocked, stale temporaries removed) behind link resolution, the folder lock and the checks
// before a replace. The renderer's pictures and the tool's outputs go through it by
// TolvexReplaceFile (tolvex/Profile.h). Safe from any thread and process.
#ifndef TOLVEX_PLATFORM_FILEREPLACE_H
#define TOLVEX_PLATFORM_FILEREPLACE_H

#include <string>
#include <string_view>

#include "platform/Os.h"
#include "platform/Status.h"

namespace tolvex::platform {

// The steps before every replace of a whole file: follows the links of `path` to `target`,
// takes `lock` (the folder lock of `target`) and checks that `target` may be replaced, setting
// `exists`. A failure leaves the lock released.
Status LockForReplace(const std::string& path, os::FolderLock* lock, std::string* target,
                      bool* exists);

// Replaces (or creates) the file at `path` with `bytes`. A symbolic link stays and the file it
// ends at is replaced; only a regular file with a write permission bit is replaced (a folder
// fails with kIsDirectory, a FIFO or device with kInvalidArgument, a read-only file with
// kAccessDenied); the new file keeps the mode, owner and group of the old. A file that this
// thread is editing is refused (kAccessDenied): its commit would undo the write. A relative
// path is taken from the current folder. On failure the file is as it was.
Status ReplaceWholeFile(const std::string& path, std::string_view bytes);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_FILEREPLACE_H
