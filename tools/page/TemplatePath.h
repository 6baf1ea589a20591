// A template file as named on the command line: the name that messages use, the path that is
// handed to the library, and the folder that relative picture names in the template are taken
// from. The profile layer looks a bare file name up in its profile folder, as Windows does in
// its Windows folder; the tool means the current folder, so a bare name is passed as "./name".
#ifndef TOLVEX_TOOLS_TEMPLATEPATH_H
#define TOLVEX_TOOLS_TEMPLATEPATH_H

#include <string>

namespace menutool {

class TemplatePath {
 public:
  explicit TemplatePath(std::string given);

  const std::string& given() const { return m_given; }    // for messages
  const std::string& library() const { return m_path; }   // for CMenuTemplate and the profile
  const std::string& folder() const { return m_folder; }  // "." or the folder part

  // A file name read from the template, as a path usable from the current folder: absolute
  // names stay, relative ones are taken from the template's folder.
  std::string Resolve(const std::string& name) const;

  // Throws ToolError unless the file exists, is a regular file and can be read.
  void RequireReadable() const;
  // Throws ToolError unless the file can also be written.
  void RequireWritable() const;

 private:
  std::string m_given;
  std::string m_path;
  std::string m_folder;
};

// `path` for the library: bare names get "./".
std::string LibraryPath(const std::string& path);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_TEMPLATEPATH_H
