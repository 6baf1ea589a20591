// Reading the files a render takes in (the template and its pictures) whole into memory, with
// the guards hostile files need: the open never blocks (a FIFO or a device is refused, not
// waited on), only regular files are read, and every read is bounded by a size limit chosen
// per kind of file. Reentrant; keeps nothing between calls.
#ifndef TOLVEX_RENDERER_INPUTFILE_H
#define TOLVEX_RENDERER_INPUTFILE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "renderer/Status.h"

namespace tolvex::render {

// A template of a full page is a few kilobytes; even one with thousands of buttons and long
// titles stays far below this.
inline constexpr size_t kMaxTemplateBytes = 16u << 20;
// Camera photos and lossless pictures of a page stay below this; anything larger is not meant
// for a DVD menu.
inline constexpr size_t kMaxPictureBytes = 64u << 20;

struct InputFile {
  std::string bytes;
  uint64_t device = 0;  // the identity of the file read, for telling inputs and outputs apart
  uint64_t inode = 0;
};

// Reads the regular file at `path` (symbolic links followed) into `file`. `kind` names it in
// the reason of a failure ("template", "picture"), which becomes `failure`'s status:
// "cannot read picture /x/a.png: no such file or directory", "... is not a regular file",
// "... is larger than 64 MB".
Status ReadInputFile(const std::string& path, const char* kind, size_t limit, Status failure,
                     InputFile* file);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_INPUTFILE_H
