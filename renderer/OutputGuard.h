// Keeps a render from overwriting what it reads: an output that is the template, one of the
// pictures drawn, or the other renderer's output is refused. Files are compared by what they
// are (device and inode, symbolic links followed), not by how their names are spelt. Keeps it
// also from overwriting what a user has: an existing file is replaced only when it is a
// picture the renderer could have made, since a template may name any file as its output.
#ifndef TOLVEX_RENDERER_OUTPUTGUARD_H
#define TOLVEX_RENDERER_OUTPUTGUARD_H

#include <string>
#include <vector>

#include "renderer/Page.h"
#include "renderer/Status.h"
#include "renderer/TemplateReader.h"

namespace tolvex::render {

// kOutputUnwritable, with the reason, when `output` is the template of `file`, a picture of
// `page`, or `otherOutput` (the output the other renderer writes for the same template, which
// need not exist yet). A file that cannot be examined is not taken for any other.
Status CheckOutputIsNoInput(const std::string& output, const TemplateFile& file,
                            const Page& page, const std::string& otherOutput);

// kOutputUnwritable, with the reason, when a regular file at `output` (symbolic links
// followed) holds something else than an uncompressed 24-bit BMP picture as the renderers
// write them, whole. An empty file, which holds nothing to lose, may be replaced. What is not
// a regular file is left to the write, which refuses it. Reads at most the picture's header.
Status CheckOutputIsOurs(const std::string& output);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_OUTPUTGUARD_H
