// Writing an output picture exactly as the profile functions replace a file: the bytes go to a
// temporary file in the target's folder, which is then renamed over the target, under the
// folder's writer lock. Readers see the old file or the new one, never a part. Safe from
// several threads and processes.
#ifndef TOLVEX_RENDERER_ATOMICFILE_H
#define TOLVEX_RENDERER_ATOMICFILE_H

#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// Replaces (or creates) the file at `path` with `bytes`.
//   - A symbolic link is followed: the link stays, the file it ends at is replaced.
//   - Only a regular file is replaced: a FIFO, device, socket or folder is refused, as is a
//     file without any write permission bit (read-only for root too).
//   - The new file keeps the mode, owner and group of the file it replaces, else gets 0666
//     less the umask.
//   - A file-size limit (RLIMIT_FSIZE) makes the write fail instead of killing the process.
//   - On failure the target is untouched and no temporary is left behind; temporaries that a
//     killed writer left beside the target are removed by the next write.
Status ReplaceFile(const std::string& path, const std::string& bytes);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_ATOMICFILE_H
