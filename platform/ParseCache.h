// The per-thread cache of parsed profile files that lets a read cost about one stat(). A read
// reuses the indexed form of a file while its stamp (device, inode, size, modification and
// change times in nanoseconds) proves it unchanged; otherwise it reads the file and compares
// bytes. Each thread has its own cache, bounded in memory; nothing is shared.
#ifndef TOLVEX_PLATFORM_PARSECACHE_H
#define TOLVEX_PLATFORM_PARSECACHE_H

#include <memory>
#include <string>

#include "platform/IndexedIni.h"
#include "platform/Status.h"

namespace tolvex::platform {

// The file at `path` as it is now, indexed. On failure (missing, unreadable, not a regular
// file, too large) the Status says why and the result is an empty file.
std::shared_ptr<const IndexedIni> ParsedFile(const std::string& path, Status* status);

// The most memory the cache of one thread keeps, in bytes. A file whose parse alone is larger
// is parsed for its read and not kept.
inline constexpr size_t kParseCacheBytes = 32u << 20;

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_PARSECACHE_H
