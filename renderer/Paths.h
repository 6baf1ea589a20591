// File names as the template uses them: the template's folder, names relative to it, and the
// default output names derived from the template's own name. Pure string work; no file access.
#ifndef TOLVEX_RENDERER_PATHS_H
#define TOLVEX_RENDERER_PATHS_H

#include <string>

namespace tolvex::render {

// The folder the template is in, without a trailing slash unless it is the root. As for the
// profile functions, a bare file name ("menu.ini") lives in the profile folder, not in the
// current one; "./menu.ini" is in the current folder.
std::string TemplateFolder(const std::string& templatePath);

// The file the template path names: a bare file name in the profile folder, any other path
// as given.
std::string TemplateOnDisk(const std::string& templatePath);

// `name` as a path: unchanged when absolute, else taken from `folder`.
std::string ResolveIn(const std::string& folder, const std::string& name);

// The template's file name without its folder and without its last extension:
// "/menus/main.ini" gives "main", "/menus/.hidden" gives ".hidden".
std::string TemplateStem(const std::string& templatePath);

// The extension of the file `path` names, in ASCII lower case and without its dot: "png" for
// "/x/Menu.PNG"; empty when its name has none.
std::string ExtensionOf(const std::string& path);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_PATHS_H
