// The edits of one thread: a session per edited file, holding the folder lock, the resolved
// target and the staged copy, and the names found to lead to that file. Sessions are kept per
// thread, so nothing here is shared between threads and nothing needs a lock of its own.
#include "platform/ProfileEdit.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Os.h"
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
  bool open = true;
};

namespace {

struct ThreadEdits {
  std::vector<std::shared_ptr<EditSession>> sessions;
  std::vector<std::string> notEdited;  // file arguments known to lead elsewhere
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
  for (auto& session : t_edits.sessions)
    if (session->identity == identity) return session.get();
  return nullptr;
}

void Close(EditSession& session) {
  if (!session.open) return;
  session.open = false;
  session.lock.reset();
  auto& sessions = t_edits.sessions;
  sessions.erase(std::remove_if(sessions.begin(), sessions.end(),
                                [&](const auto& s) { return s.get() == &session; }),
                 sessions.end());
  t_edits.notEdited.clear();
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
    status = os::ReadWholeFile(session->target, &bytes);
    if (!status.ok()) return status;
  }
  session->staged = std::make_unique<StagedProfile>(bytes, exists);
  session->names.push_back(file);
  t_edits.sessions.push_back(session);
  t_edits.notEdited.clear();
  edit->reset(new ProfileEdit(std::move(session), nullptr));
  return Status::Ok();
}

ProfileEdit::~ProfileEdit() {
  if (!IsOpen()) return;
  if (m_savepoint) {
    *m_session->staged = std::move(*m_savepoint);
  } else {
    Close(*m_session);
  }
}

bool ProfileEdit::IsOpen() const { return m_open && m_session->open; }

Status ProfileEdit::Commit() {
  if (!IsOpen()) return Status::Error(StatusCode::kInvalidArgument);
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
  ThreadEdits& edits = t_edits;
  if (edits.sessions.empty() || !file || !*file) return nullptr;
  const std::string_view asked(file);
  for (auto& session : edits.sessions)
    for (const std::string& name : session->names)
      if (std::string_view(name) == asked) return session->staged.get();
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
