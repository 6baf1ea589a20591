// The edits of one thread: a session per edited file, holding the folder lock, the resolved
// target and the staged copy, the names found to lead to that file, and what the file was when
// the edit began. Sessions are kept per thread; another thread may only end one (by dropping
// its edit), which it marks closed with an atomic flag that the owner's next call sees, and its
// lock can be released from any thread (see posix/PosixLock.cpp). Misuse is refused or made
// harmless: a commit from another thread or from a forked child fails with kNotOwner and
// writes nothing; a forked child's calls go to the file (waiting for the parent's edit) and its
// drop of the edit leaves the parent's lock alone; a thread that ends drops its edits.
#include "platform/ProfileEdit.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/IniLine.h"
#include "platform/Os.h"
#include "platform/ParseCache.h"
#include "platform/ProfileFolder.h"
#include "platform/ProfileStore.h"
#include "platform/StagedProfile.h"

namespace tolvex::platform {

struct EditSession {
  os::FileIdentity identity;
  std::string target;  // the file the edit replaces, links resolved
  std::unique_ptr<os::FolderLock> lock;
  std::unique_ptr<StagedProfile> staged;
  std::vector<std::string> names;  // file arguments known to lead here
  std::atomic<bool> open{true};
  // Who began the edit.
  int pid = 0;
  std::thread::id thread;
  // The file when the edit began: whether it existed, its stamp, and, when the stamp was too
  // recent to prove its content, its bytes.
  bool existed = false;
  os::FileStamp stamp;
  bool stampProves = false;
  std::string bytes;

  bool OwnedHere() const {
    return pid == os::ProcessId() && thread == std::this_thread::get_id();
  }
};

namespace {

// Ends the edit of `session` without writing: releases its lock, from whatever thread. The
// first end wins; the owner's list forgets the session on its next call.
void End(EditSession& session) {
  if (!session.open.exchange(false)) return;
  session.lock.reset();
}

// The session and file argument of the last call that reached an edit: calls come in long runs
// on one file by one name. Kept apart from ThreadEdits, with nothing to construct or destroy,
// so that such a call finds it without the set-up of the thread's list; forgotten whenever a
// session leaves the list.
struct LastEdit {
  EditSession* session;
  size_t name;  // the index of the file argument in session->names
};
thread_local LastEdit t_last{nullptr, 0};

struct ThreadEdits {
  std::vector<std::shared_ptr<EditSession>> sessions;
  std::vector<std::string> notEdited;  // file arguments known to lead elsewhere

  // A thread that ends with edits never dropped releases their locks.
  ~ThreadEdits() {
    t_last = LastEdit{nullptr, 0};
    for (auto& session : sessions)
      if (session->pid == os::ProcessId()) End(*session);
  }
  // Forgets the sessions that another thread ended, and in a forked child the parent's.
  void Prune() {
    const int pid = os::ProcessId();
    const auto gone = std::remove_if(sessions.begin(), sessions.end(), [&](const auto& s) {
      return !s->open.load() || s->pid != pid;
    });
    if (gone != sessions.end()) {
      sessions.erase(gone, sessions.end());
      notEdited.clear();
      t_last = LastEdit{nullptr, 0};
    }
  }
};

thread_local ThreadEdits t_edits;

// The file `file` names, links resolved, and its identity.
Status Locate(const char* file, std::string* target, os::FileIdentity* identity) {
  std::string path;
  Status status = ResolveProfilePath(file, &path);
  if (status.ok()) status = os::ResolveLinks(path, target);
  if (status.ok()) status = os::IdentifyFile(*target, identity);
  return status;
}

EditSession* OpenSessionOf(const os::FileIdentity& identity) {
  t_edits.Prune();
  for (auto& session : t_edits.sessions)
    if (session->identity == identity) return session.get();
  return nullptr;
}

void Close(EditSession& session) {
  End(session);
  t_edits.Prune();
}

// Whether the file is still as it was when the edit began: the same stamp, and the same bytes
// when the stamp alone could not prove that. Another program may replace or rewrite the file
// without taking our lock; the commit must not overwrite what it wrote.
bool Unchanged(const EditSession& session) {
  os::FileStamp now;
  const bool exists = os::StampFile(session.target, &now).ok();
  if (!session.existed) return !exists;
  if (!exists || !now.SameFileAs(session.stamp)) return false;
  if (session.stampProves) return true;
  std::string bytes;
  return os::ReadWholeFile(session.target, &bytes).ok() && bytes == session.bytes;
}

}  // namespace

ProfileEdit::ProfileEdit(std::shared_ptr<EditSession> session,
                         std::unique_ptr<StagedProfile> savepoint)
    : m_session(std::move(session)), m_savepoint(std::move(savepoint)) {}

Status ProfileEdit::Begin(const char* file, std::unique_ptr<ProfileEdit>* edit) {
  if (!file || !*file) return Status::Error(StatusCode::kInvalidArgument);
  std::string path;
  Status status = ResolveProfilePath(file, &path);
  if (!status.ok()) return status;
  if (path != file) {
    // A bare name: the profile folder is made on the first write into it, as a write would.
    status = os::CreateFolders(ProfileFolder());
    if (!status.ok()) return status;
  }
  auto session = std::make_shared<EditSession>();
  status = Locate(file, &session->target, &session->identity);
  if (!status.ok()) return status;

  t_edits.Prune();
  for (auto& open : t_edits.sessions) {
    if (open->identity == session->identity) {
      edit->reset(new ProfileEdit(open, std::make_unique<StagedProfile>(*open->staged)));
      return Status::Ok();
    }
  }

  session->lock = std::make_unique<os::FolderLock>();
  status = session->lock->Acquire(session->target);
  if (!status.ok()) return status;
  bool exists = false;
  status = os::CheckReplaceable(session->target, &exists);
  if (!status.ok()) return status;
  std::string bytes;
  if (exists) {
    status = os::ReadWholeFile(session->target, &bytes, &session->stamp);
    if (!status.ok()) return status;
    session->stampProves = StampProvesContent(session->stamp);
    if (!session->stampProves) session->bytes = bytes;
  }
  session->existed = exists;
  session->pid = os::ProcessId();
  session->thread = std::this_thread::get_id();
  session->staged = std::make_unique<StagedProfile>(bytes, exists);
  session->names.push_back(file);
  t_edits.sessions.push_back(session);
  t_edits.notEdited.clear();
  edit->reset(new ProfileEdit(std::move(session), nullptr));
  return Status::Ok();
}

ProfileEdit::~ProfileEdit() {
  if (!IsOpen()) return;
  if (!m_savepoint) {
    // From any thread; in a forked child only the child's copy of the lock goes.
    Close(*m_session);
  } else if (m_session->OwnedHere()) {
    *m_session->staged = std::move(*m_savepoint);
  }
}

bool ProfileEdit::IsOpen() const { return m_open && m_session->open; }

Status ProfileEdit::Commit() {
  if (!IsOpen()) return Status::Error(StatusCode::kInvalidArgument);
  // Only the thread that staged the changes writes them: another thread could race its calls,
  // and a forked child holds a copy of the parent's changes, not its own.
  if (!m_session->OwnedHere()) return Status::Error(StatusCode::kNotOwner);
  m_open = false;
  if (m_savepoint) {
    m_savepoint.reset();
    return Status::Ok();
  }
  EditSession& session = *m_session;
  Status status = Status::Ok();
  if (session.staged->changed()) {
    // Checked again: the file or its folder may have become read-only since the edit began.
    bool exists = false;
    status = os::CheckReplaceable(session.target, &exists);
    if (status.ok() && !Unchanged(session)) status = Status::Error(StatusCode::kChanged);
    if (status.ok()) {
      const StagedProfile& staged = *session.staged;
      status = os::ReplaceFileFrom(session.target,
                                   [&](const ByteSink& write) { return staged.WriteBytes(write); });
    }
  }
  Close(session);
  return status;
}

StagedProfile* StagedFileFor(const char* file) {
  if (!file || !*file) return nullptr;
  const LastEdit last = t_last;
  if (last.session && last.session->open.load() && last.session->pid == os::ProcessId() &&
      IsSameName(last.session->names[last.name], file))
    return last.session->staged.get();
  ThreadEdits& edits = t_edits;
  if (edits.sessions.empty()) return nullptr;
  edits.Prune();
  const std::string_view asked(file);
  for (auto& session : edits.sessions) {
    for (size_t i = 0; i < session->names.size(); ++i) {
      if (std::string_view(session->names[i]) == asked) {
        t_last = LastEdit{session.get(), i};
        return session->staged.get();
      }
    }
  }
  for (const std::string& name : edits.notEdited)
    if (std::string_view(name) == asked) return nullptr;

  std::string target;
  os::FileIdentity identity;
  if (Locate(file, &target, &identity).ok()) {
    if (EditSession* session = OpenSessionOf(identity)) {
      session->names.push_back(file);
      return session->staged.get();
    }
  }
  // Kept short: a thread that reaches many other files while editing looks them up again.
  if (edits.notEdited.size() >= 16) edits.notEdited.clear();
  edits.notEdited.push_back(file);
  return nullptr;
}

}  // namespace tolvex::platform
