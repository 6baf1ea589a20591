// Keeps a render from overwriting what it reads: an output that is the template, one of the
// pictures drawn, or the other renderer's output is refused. Files are compared by what they
// are (device and inode, symbolic links followed), not by how their names are spelt.
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

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_OUTPUTGUARD_H
