// Copies of a template file that keep the user's file whole. A ScratchCopy is a private copy
// in a fresh temporary folder for commands that must not change the file (show, check switch
// "CurrentNumberOfButton" on it to read every layout). A StagedEdit is a copy beside the file
// that a command edits through CMenuTemplate and then renames over it in one step, so the
// file is never seen half-written, whatever setter fails on the way. Both copies are made
// with CMenuTemplate::CopyTemplateFile and removed when the object goes unless committed.
// A StagedEdit of an existing file commits only if the file still holds the bytes it was
// copied from, so an edit made meanwhile by another writer is not silently undone: the commit
// reports it and the command starts again. Not for concurrent use of one object.
#ifndef TOLVEX_TOOLS_TEMPLATECOPY_H
#define TOLVEX_TOOLS_TEMPLATECOPY_H

#include "tools/TemplatePath.h"

#include <string>

namespace menutool {

class ScratchCopy {
 public:
  explicit ScratchCopy(const TemplatePath& original);
  ~ScratchCopy();
  ScratchCopy(const ScratchCopy&) = delete;
  ScratchCopy& operator=(const ScratchCopy&) = delete;

  const std::string& path() const { return m_path; }

 private:
  std::string m_folder;
  std::string m_path;
};

class StagedEdit {
 public:
  // With `fromOriginal`, the staged file starts as a copy of the target (which must exist and
  // be writable); otherwise it starts empty (the target must not exist unless `replace`).
  StagedEdit(const TemplatePath& target, bool fromOriginal, bool replace = false);
  ~StagedEdit();
  StagedEdit(const StagedEdit&) = delete;
  StagedEdit& operator=(const StagedEdit&) = delete;

  // The path to bind a CMenuTemplate to.
  const std::string& path() const { return m_staged; }
  // Renames the staged file over the target; throws ToolError when that fails, and
  // ChangedMeanwhile when another writer changed the target since it was copied.
  void Commit();

  struct ChangedMeanwhile {};

 private:
  const TemplatePath& m_target;
  std::string m_final;   // the target with symbolic links resolved
  std::string m_staged;
  unsigned m_mode;
  std::string m_copiedBytes;  // the target's bytes when it was copied (fromOriginal only)
  bool m_fromOriginal;
  bool m_committed = false;
};

}  // namespace menutool

#endif  // TOLVEX_TOOLS_TEMPLATECOPY_H
