// Writing an output picture so that readers see the old file or the new one, never a part:
// the bytes go to a temporary file in the target's folder, which is then renamed over the
// target. Safe from several threads and processes (every writer has its own temporary).
#ifndef TOLVEX_RENDERER_ATOMICFILE_H
#define TOLVEX_RENDERER_ATOMICFILE_H

#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// Replaces (or creates) the file at `path` with `bytes`. The new file keeps the mode of the
// file it replaces, else gets 0666 less the umask. A symbolic link at `path` is replaced by the
// file, not followed. On failure the target is untouched and no temporary is left behind.
Status ReplaceFile(const std::string& path, const std::string& bytes);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_ATOMICFILE_H
