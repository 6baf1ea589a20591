// What check finds wrong with the files a template names, before the renderer trips over
// them: pictures that are missing, not regular files (a folder, a FIFO), empty, too large,
// truncated or corrupt; music that is not there; an output whose folder is missing. Files are
// opened without blocking and only when they are regular; reads are bounded by size. The
// limits, formats and header reading are the renderer's own, so check and render agree.
#ifndef TOLVEX_TOOLS_PICTURECHECK_H
#define TOLVEX_TOOLS_PICTURECHECK_H

#include <optional>
#include <string>

namespace menutool {

// What makes `path` unusable as a picture ("is empty", "is a folder"...), or nullopt when it
// decodes whole.
std::optional<std::string> PictureProblem(const std::string& path);

// What makes `path` unusable as an input file of another kind (music): it must be a regular,
// readable, non-empty file.
std::optional<std::string> InputFileProblem(const std::string& path);

// What keeps an output from being written at `path`: its folder is missing or not writable,
// or the path names a folder or something that is not a regular file.
std::optional<std::string> OutputProblem(const std::string& path);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PICTURECHECK_H
