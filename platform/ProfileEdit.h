// Edits of profile files: while an edit lives, every profile read and write that its thread
// makes to the edited file (by any name) goes to a copy held in memory, and Commit writes the
// copy with one atomic replace. An edit belongs to the thread that began it; other threads and
// processes see the file as it was until the commit, and their writers wait for the edit to
// end (it holds the folder lock from begin to end; see posix/PosixLock.cpp). Another thread may
// drop an edit (which then ends at once), not commit it; a thread that ends drops its edits;
// a forked child neither commits nor releases its parent's edit, and its calls go to the file.
#ifndef TOLVEX_PLATFORM_PROFILEEDIT_H
#define TOLVEX_PLATFORM_PROFILEEDIT_H

#include <memory>

#include "platform/Status.h"

namespace tolvex::platform {

class StagedProfile;
struct EditSession;

class ProfileEdit {
 public:
  // Begins an edit of `file` (the profile path rules apply). When this thread already edits
  // that file, the new edit is nested in the open one: its Commit leaves its changes to the
  // outer edit, and dropping it restores what the outer edit held when it began. Fails, with
  // no edit begun, for a path that cannot be written (as a write would fail) and where taking
  // the folder lock could deadlock (the lock order of posix/PosixLock.cpp).
  static Status Begin(const char* file, std::unique_ptr<ProfileEdit>* edit);

  ~ProfileEdit();  // an edit still open is dropped: the file stays untouched
  ProfileEdit(const ProfileEdit&) = delete;
  ProfileEdit& operator=(const ProfileEdit&) = delete;

  bool IsOpen() const;
  // Writes the staged file with one atomic replace (nothing when nothing changed) and ends the
  // edit, also on failure, which leaves the file as it was. Fails with kChanged, writing
  // nothing, when another program changed or replaced the file since the edit began. From a
  // thread or process other than the one that began the edit, fails with kNotOwner and leaves
  // the edit as it was.
  Status Commit();

 private:
  ProfileEdit(std::shared_ptr<EditSession> session, std::unique_ptr<StagedProfile> savepoint);

  std::shared_ptr<EditSession> m_session;
  std::unique_ptr<StagedProfile> m_savepoint;  // nested edits only: the state to go back to
  bool m_open = true;
};

// The staged copy of `file` when the calling thread edits it, else nullptr. Cheap when the
// thread edits nothing. A name is matched to the edited file the first time the thread uses it
// during the edit (a relative name from the current folder at that moment).
StagedProfile* StagedFileFor(const char* file);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_PROFILEEDIT_H
