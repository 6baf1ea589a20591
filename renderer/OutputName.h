// Where a renderer writes its picture: the name in the template's "Background" section
// ("OutputBmp" or "OutMask"), or a default beside the template that is then recorded under
// that key. Writes the picture with the profile library's replace (TolvexReplaceFile) and
// records through the profile functions, both under their lock.
#ifndef TOLVEX_RENDERER_OUTPUTNAME_H
#define TOLVEX_RENDERER_OUTPUTNAME_H

#include <string>

#include "renderer/Status.h"
#include "renderer/TemplateReader.h"

namespace tolvex::render {

struct OutputName {
  std::string path;      // where to write, relative names taken from the template's folder
  std::string toRecord;  // the name to write under the key afterwards; empty when it is there
};

// The output named by `key`, or "<template name><suffix>" beside the template when the key is
// missing (or reads "default", or is empty).
OutputName ResolveOutput(const TemplateFile& file, const char* key, const char* suffix);

// Replaces (or creates) the output `path` with `bytes`: atomically, following a symbolic link,
// only over a regular file with a write permission bit (read-only for root too), keeping its
// mode, owner and group; a file-size limit fails the write instead of killing the process.
// On failure the file is untouched and no temporary is left behind.
Status WriteOutput(const std::string& path, const std::string& bytes);

// Records a default name in the template once the picture is written. The bare file name is
// recorded, relative to the template's folder like every other name in the template, so a
// template moved with its pictures keeps working.
Status RecordOutput(const std::string& templatePath, const char* key, const OutputName& name);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_OUTPUTNAME_H
