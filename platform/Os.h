// The operating-system seam of the platform layer: the few file primitives the profile code
// needs (read a whole file, replace one atomically, lock a folder, copy, probe a path). One
// implementation per system lives beside this file (posix/); everything above is OS-unaware.
// Every function may be called from any thread; FolderLock is what serialises writers.
#ifndef TOLVEX_PLATFORM_OS_H
#define TOLVEX_PLATFORM_OS_H

#include <string>
#include <string_view>

#include "platform/Status.h"

namespace tolvex::platform::os {

// Reads the whole of `path` into `bytes` with one open and a read loop. kNotFound when the
// file does not exist, kIsDirectory for a folder.
Status ReadWholeFile(const std::string& path, std::string* bytes);

// Follows symbolic links from `path` to the file they end at, which need not exist yet, so
// that a write replaces the link's target and leaves the link in place.
Status ResolveLinks(const std::string& path, std::string* target);

// Checks, before any change, that `target` (links already resolved) can be replaced: its
// folder exists and is writable, it is no folder, and, if it exists, it has a write permission
// bit and we may write it. A file without write bits is read-only for every caller, root
// included. Sets `exists` to whether the file is there.
Status CheckReplaceable(const std::string& target, bool* exists);

// Replaces the content of `target` with `bytes` atomically: a reader or a crash sees the old
// bytes or the new, never a mix. An existing file keeps its mode bits and, where permitted,
// its owner and group. The caller holds the FolderLock of `target`.
Status ReplaceFile(const std::string& target, std::string_view bytes);

// Copies `source` to `target` (atomically, under the target's FolderLock); the copy takes the
// source's mode bits. Fails with kAlreadyExists when `failIfExists` and the target exists, and
// with kAccessDenied when the target is read-only.
Status CopyFile(const std::string& source, const std::string& target, bool failIfExists);

// Creates `folder` and any missing parents.
Status CreateFolders(const std::string& folder);

// An exclusive lock shared by every writer of the files of one folder, in this and in other
// processes. Released by the destructor. See posix/PosixLock.cpp for why it is a folder lock.
class FolderLock {
 public:
  FolderLock() = default;
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // Blocks until this caller holds the lock of the folder that contains `file`.
  Status Acquire(const std::string& file);

 private:
  int m_handle = -1;
};

}  // namespace tolvex::platform::os

#endif  // TOLVEX_PLATFORM_OS_H
