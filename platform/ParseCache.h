// The per-thread cache of the indexed forms of profile files. A read costs about one stat():
// the form of a file is reused while its stamp (device, inode, size, modification and change
// times in nanoseconds) proves it unchanged; otherwise the file is read and compared with the
// form's bytes. A write under the folder lock changes the cached form in place and keeps it
// for the reads and writes that follow. Each thread has its own cache, bounded in memory;
// nothing is shared.
#ifndef TOLVEX_PLATFORM_PARSECACHE_H
#define TOLVEX_PLATFORM_PARSECACHE_H

#include <memory>
#include <string>

#include "platform/IndexedIni.h"
#include "platform/Os.h"
#include "platform/Status.h"

namespace tolvex::platform {

// The file at `path` as it is now, indexed. On failure (missing, unreadable, not a regular
// file, too large) the Status says why and the result is an empty file.
std::shared_ptr<const IndexedIni> ParsedFile(const std::string& path, Status* status);

// For a writer that holds the folder lock of `path`: the form of the file as it is now, which
// the writer may change in place. After a change the writer reports FileWritten with the form
// it wrote (this one, or a new one for a file it made), else ForgetFile. On failure the Status
// says why and the result is null.
std::shared_ptr<IndexedIni> FileToChange(const std::string& path, Status* status);
void FileWritten(const std::string& path, std::shared_ptr<IndexedIni> form);
void ForgetFile(const std::string& path);

// Whether `stamp`, as ReadWholeFile took it, proves the content read: taken clearly after the
// file's last change, on a file system whose times can be trusted (the racy-time rule of
// ParseCache.cpp).
bool StampProvesContent(const os::FileStamp& stamp);

// The most memory the cache of one thread keeps, in bytes. A file whose form alone is larger
// is read for its call and not kept.
inline constexpr size_t kParseCacheBytes = 32u << 20;

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_PARSECACHE_H
