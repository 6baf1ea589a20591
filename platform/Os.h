// The operating-system seam of the platform layer: the few file primitives the profile code
// needs (read a whole file, replace one atomically, lock a folder, copy, probe a path), and
// the looks at a path that the menutemplate tool takes before it uses a file a user named.
// One implementation per system lives beside this file (posix/, win32/); everything above is
// OS-unaware. Every function may be called from any thread; FolderLock is what serialises
// writers.
#ifndef TOLVEX_PLATFORM_OS_H
#define TOLVEX_PLATFORM_OS_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "platform/Status.h"

// <windows.h> makes CopyFile and ReplaceFile macros of its A and W functions; the names below
// are ours.
#ifdef CopyFile
#  undef CopyFile
#endif
#ifdef ReplaceFile
#  undef ReplaceFile
#endif

namespace tolvex::platform::os {

// The largest profile file read, in bytes. Templates of a few megabytes are large; the limit
// only stops a read of something that is no template at all from taking unbounded memory.
inline constexpr uint64_t kMaxProfileBytes = 256ull << 20;

// What proves a file unchanged since it was read: its identity, size and times, and whether
// its file system keeps times that can be trusted for that (see posix/PosixFiles.cpp).
struct FileStamp {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  int64_t modifiedNs = 0;
  int64_t changedNs = 0;
  int64_t takenNs = 0;        // ReadWholeFile only: the system time just before it looked
  bool timesTrusted = false;  // set by ReadWholeFile only
  bool readOnly = false;      // no write permission bit (POSIX), the read-only attribute (Windows)
  bool SameFileAs(const FileStamp& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           modifiedNs == other.modifiedNs && changedNs == other.changedNs;
  }
};

// Reads the whole of `path` into `bytes` with one open and a read loop, and, when `stamp` is
// given, stamps what was read. Only regular files are read, and without waiting for a writer
// (a FIFO or device fails at once with kInvalidArgument); kNotFound when the file does not
// exist, kIsDirectory for a folder, kNoSpace for a file over `limit` bytes.
Status ReadWholeFile(const std::string& path, std::string* bytes, FileStamp* stamp = nullptr,
                     uint64_t limit = kMaxProfileBytes);

// Reads the first `count` bytes of the regular file at `path` (fewer when it is shorter) with
// the guards of ReadWholeFile, whatever the file's size, and stamps it when `stamp` is given.
Status ReadFileStart(const std::string& path, size_t count, std::string* bytes,
                     FileStamp* stamp = nullptr);

// Path spelling of this system. The last separator of folders in `path` ('/', and '\\' on
// Windows), or npos; whether `path` is absolute (not taken from a folder); the folder part of
// `file` ("." when it has none, the root for a file in one); its last component.
size_t LastSeparator(std::string_view path);
bool IsAbsolutePath(std::string_view path);
std::string FolderOf(const std::string& file);
std::string BaseNameOf(const std::string& file);

// Stamps `path` with one stat(), following links (takenNs and timesTrusted are left unset).
Status StampFile(const std::string& path, FileStamp* stamp);

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

// Content produced piece by piece into a ByteSink, so that it need not be held whole; it
// returns the first failure of the sink, or its own.
using ContentSource = std::function<Status(const ByteSink& write)>;

// As ReplaceFile, with the new content written by `content` as it produces it.
Status ReplaceFileFrom(const std::string& target, const ContentSource& content);

// Copies `source` to `target` (atomically, under the target's FolderLock); the copy takes the
// source's mode bits. Fails with kAlreadyExists when `failIfExists` and the target exists, and
// with kAccessDenied when the target is read-only.
Status CopyFile(const std::string& source, const std::string& target, bool failIfExists);

// What names one file for the edits of a thread: the folder it is in, by device and inode, and
// its name there. Two paths with the same identity reach the same file, whatever their spelling.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t inode = 0;
  std::string name;
  bool operator==(const FileIdentity& other) const {
    return device == other.device && inode == other.inode && name == other.name;
  }
};

// The identity of `target` (links already resolved). The file need not exist; its folder must.
Status IdentifyFile(const std::string& target, FileIdentity* identity);

// The id of this process, without a system call on each use: kept, and renewed in a child
// right after fork().
int ProcessId();

// Creates `folder` and any missing parents.
Status CreateFolders(const std::string& folder);

// What a path names, as LookAt sees it.
enum class PathKind { kFile, kFolder, kPipe, kDevice, kOther };

struct PathInfo {
  PathKind kind = PathKind::kOther;
  uint64_t size = 0;
  int64_t modifiedSeconds = 0;  // since 1970
  // No write permission bit (POSIX) or the read-only attribute (Windows): read-only for every
  // caller, root and administrators included.
  bool readOnly = false;
  // Owned by the user this process runs as (Windows: always, a file's owner is not looked at).
  bool ownedByCaller = false;
};

// Looks at `path` without opening it: at what links lead to, or, without `followLinks`, at a
// link itself. kNotFound when there is nothing there.
Status LookAt(const std::string& path, PathInfo* info, bool followLinks = true);

// Whether this process may read the file `path`: opens it without waiting for a writer and
// without making a terminal its own, and refuses what opened unless it is a regular file
// (kIsDirectory for a folder, kInvalidArgument for anything else).
Status CheckReadable(const std::string& path);

// Whether this process may write the existing file `path`, by its permissions (read-only files
// are told by LookAt).
Status CheckWritable(const std::string& path);

// Whether this process may make files in `folder`, which must exist.
Status CheckFolderWritable(const std::string& folder);

// Makes a new, empty folder that only this user may use, in the system's folder of temporary
// files, named `prefix` and a few random characters; `folder` is its path.
Status MakePrivateFolder(const std::string& prefix, std::string* folder);

// Whether the standard output of this process goes to a terminal (a console on Windows).
bool StandardOutputIsTerminal();

// Makes the standard input, output and error of this process carry bytes as they are, with no
// line ends translated (Windows' text mode writes "\r\n" for "\n" and ends input at a
// Ctrl-Z), so that a program's output and its input are the same bytes on every system.
void UseBinaryStandardStreams();

// An exclusive lock shared by every writer of the files of one folder, in this and in other
// processes. Released by the destructor, on whatever thread it runs (in a forked child it
// only lets go of the child's copy). Within one thread it is re-entrant: a thread that
// already holds a folder's lock (an edit holds it from its start to its end) takes it again at
// once. See posix/PosixLock.cpp for why it is a folder lock and for the lock order.
class FolderLock {
 public:
  FolderLock() = default;
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // Blocks until this caller holds the lock of the folder that contains `file`. Fails instead
  // of waiting where waiting could deadlock (see the lock order in posix/PosixLock.cpp).
  Status Acquire(const std::string& file);

 private:
  bool m_held = false;
  uint64_t m_device = 0;
  uint64_t m_inode = 0;
  int m_pid = 0;              // the process and thread that took it
  std::thread::id m_thread;
};

}  // namespace tolvex::platform::os

#endif  // TOLVEX_PLATFORM_OS_H
