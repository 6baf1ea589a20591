// One command's hold on a template file: a tolvex::TemplateEdit of it, so that every profile
// read and write the command makes (through CMenuTemplate or the profile functions, by any name
// of the file) goes to one copy in memory. A writing command commits it, and the file is
// replaced once, whole, under the library's write lock: no other writer's change is lost, and a
// failure anywhere leaves the file byte for byte. show and check never commit, which lets them
// switch "CurrentNumberOfButton" to read every layout without touching the file; while the
// session lives, writers of the same folder wait. A template that cannot be edited (read-only,
// or in a folder that cannot be written) is read through an edit of a private copy, which
// exists only for the moment the edit takes its bytes. One session per command, on its thread.
#ifndef TOLVEX_TOOLS_TEMPLATESESSION_H
#define TOLVEX_TOOLS_TEMPLATESESSION_H

#include "tools/page/TemplatePath.h"

#include <tolvex/MenuTemplate.h>
#include <tolvex/TemplateEdit.h>

#include <memory>
#include <string>

namespace menutool {

class TemplateSession {
 public:
  // What the command will do with the file, and so what it must be.
  enum class Purpose {
    kRead,    // an existing, readable template; never committed
    kChange,  // an existing, writable template
    kCreate,  // a new template: the file must not exist
    kReplace  // a new template over the file that is there: every section of it is removed
              // (lines before the first section, which no read sees, stay)
  };

  // Throws ToolError when the file is not what `purpose` needs or cannot be opened.
  TemplateSession(const TemplatePath& file, Purpose purpose);
  // Drops every change that was not committed.
  ~TemplateSession();
  TemplateSession(const TemplateSession&) = delete;
  TemplateSession& operator=(const TemplateSession&) = delete;

  CMenuTemplate& menu() { return m_menu; }
  // The path for the profile functions (RawProfile) that reaches the same edit.
  const std::string& path() const { return m_path; }

  // Writes every change in one durable replace of the file; throws ToolError when that fails,
  // with the file as it was.
  void Commit();

 private:
  // Begins the edit of a private copy of the file, for reading only.
  void EditPrivateCopy();

  const TemplatePath& m_file;
  std::string m_path;
  CMenuTemplate m_menu;
  std::unique_ptr<tolvex::TemplateEdit> m_edit;
};

}  // namespace menutool

#endif  // TOLVEX_TOOLS_TEMPLATESESSION_H
