// tolvex::TemplateEdit: many changes of one template file made in memory and written with one
// durable atomic replace. Without an edit every setter writes the file at once (one locked,
// flushed replace per key); inside one, a whole page costs about one such write.
//
// While an edit lives, every profile read and write that the thread which made it makes to
// the edited file goes to a copy in memory: setters return 1 once the change is staged, and
// getters, the layout lookup and the sentinel reads see the staged values. The file is the
// same edit whatever name reaches it (a relative path, a symbolic link, a bare name in the
// profile folder); a name is matched the first time the thread uses it during the edit, a
// relative one from the current folder at that moment. CopyFileA and CopyTemplateFile copy
// the file on disk, not the staged copy.
//
// Other threads and processes see the file as it was until Commit. Writers elsewhere wait for
// the edit to end: it holds the lock of the file's folder from its start to its end, so no
// update is lost on either side. Keep edits short, and end them on the thread that began them.
//
// Misuse is refused or made harmless, never a held lock or a lost write: Commit from another
// thread, or from a process forked while the edit was open, returns false and writes nothing;
// destroying the edit on another thread drops it and releases the lock at once; a forked
// child's calls go to the file (waiting for the parent's edit) and its copy of the edit never
// releases the parent's lock; a thread that ends with an edit never destroyed drops it.
// Rendering (CreateMenuBMP, CreateMaskBMP) inside an edit of the template renders the file
// on disk and records the output names into the edit. A program that does not use the library
// and changes or replaces the file during the edit makes Commit return false without writing.
//
// Commit writes everything at once, with every guarantee of a single write: mode and owner
// kept, a symbolic link followed, a read-only file refused (root included), a failure leaving
// the file byte for byte, and a crash or kill at any moment leaving the old bytes or the new.
// An edit destroyed without Commit drops every staged change; the file is untouched.
//
// Nesting: an edit of a file that this thread already edits joins the open edit. Its Commit
// returns true and leaves its changes to the outer edit (they reach the file with the outer
// Commit); dropping it restores what the outer edit held when the nested one began. When the
// outer edit ends first, the nested one is over (IsOpen false, Commit false).
// A file that does not exist yet: the edit begins with an empty copy, and Commit creates the
// file only if something was written to it.
// Several files at once: one thread may edit several files, in the same folder or not, and
// also write other files of an edited folder directly; none of this waits on itself. Where an
// edit or a write would have to wait for another folder's lock while this thread holds edit
// locks out of order (a wait that could deadlock against another thread doing the reverse), it
// does not wait: the edit does not begin (IsOpen false, its calls go to the file directly) or
// the write returns 0.
// An edit that cannot begin (no template file bound, missing folder, read-only file) is not
// open; the calls then go to the file as usual and Commit returns false.
#ifndef TOLVEX_TEMPLATEEDIT_H
#define TOLVEX_TEMPLATEEDIT_H

#include <tolvex/Export.h>

class CMenuTemplate;
struct TolvexProfileEdit;

namespace tolvex {

class TOLVEX_API TemplateEdit {
 public:
  explicit TemplateEdit(CMenuTemplate& menu);  // an edit of the menu's template file
  explicit TemplateEdit(const char* file);     // the same path rules as the profile functions
  ~TemplateEdit();                             // drops uncommitted changes
  TemplateEdit(const TemplateEdit&) = delete;
  TemplateEdit& operator=(const TemplateEdit&) = delete;

  // True while the edit stages changes: it began, and is neither committed nor failed.
  bool IsOpen() const;
  // Writes every staged change with one durable atomic replace. False when the file could not
  // be written (it is then as it was) or the edit was not open. The edit is over afterwards.
  bool Commit();

 private:
  TolvexProfileEdit* m_edit;
};

}  // namespace tolvex

#endif  // TOLVEX_TEMPLATEEDIT_H
