// Reads and writes of profile files: path rules, then the OS seam for the bytes and the
// parser and editor for their meaning. No cache: every call reads the file afresh, so each
// read sees every change made by any writer.
#include "platform/ProfileStore.h"

#include <cstring>
#include <memory>
#include <optional>

#include "platform/IniDocument.h"
#include "platform/IniEditor.h"
#include "platform/IniQuery.h"
#include "platform/Os.h"
#include "platform/ProfileEdit.h"
#include "platform/ProfileFolder.h"
#include "platform/StagedProfile.h"

namespace tolvex::platform {
namespace {

bool IsBareName(const char* file) { return std::strpbrk(file, "/\\") == nullptr; }

// The parse of the bytes this thread read last. Reads of one template come in long runs
// (a getter of four values is five reads), and parsing costs far more than reading, so a read
// whose file holds exactly the same bytes again reuses the parse. Every read still reads the
// whole file and compares every byte: no change by any writer is ever missed.
const IniDocument& Parsed(std::string bytes) {
  struct LastParse {
    std::string bytes;
    std::unique_ptr<IniDocument> document;
  };
  thread_local LastParse last;
  if (!last.document || last.bytes != bytes) {
    last.document = std::make_unique<IniDocument>(bytes);
    last.bytes = std::move(bytes);
  }
  return *last.document;
}

Status LockedWrite(const char* app, const char* key, const char* value,
                   const std::string& path) {
  std::string target;
  Status status = os::ResolveLinks(path, &target);
  if (!status.ok()) return status;
  os::FolderLock lock;
  status = lock.Acquire(target);
  if (!status.ok()) return status;

  // Checked first, so that a read-only file fails even when nothing would change.
  bool exists = false;
  status = os::CheckReplaceable(target, &exists);
  if (!status.ok()) return status;
  std::string bytes;
  if (exists) {
    status = os::ReadWholeFile(target, &bytes);
    if (!status.ok()) return status;
  } else if (!value || !key) {
    // Windows leaves an empty file behind when asked to remove from a missing one.
    return os::ReplaceFile(target, "");
  }

  std::optional<std::string> changed = EditProfileText(Parsed(bytes), bytes, app, key, value);
  if (!changed) return Status::Ok();
  return os::ReplaceFile(target, *changed);
}

}  // namespace

Status ResolveProfilePath(const char* file, std::string* path) {
  if (!file || !*file) return Status::Error(StatusCode::kInvalidArgument);
  if (IsBareName(file)) {
    *path = ProfileFolder() + "/" + file;
  } else {
    *path = file;
  }
  return Status::Ok();
}

Status ReadProfileString(const char* app, const char* key, const char* defaultText,
                         char* buffer, uint32_t size, const char* file, uint32_t* length) {
  *length = 0;
  if (size == 0) return Status::Ok();
  if (StagedProfile* staged = StagedFileFor(file)) {
    *length = staged->Read(app, key, defaultText, buffer, size);
    return Status::Ok();
  }
  std::string path, bytes;
  Status status = ResolveProfilePath(file, &path);
  if (status.ok()) status = os::ReadWholeFile(path, &bytes);
  if (!status.ok()) bytes.clear();

  *length = ReadProfileText(Parsed(std::move(bytes)), app, key, defaultText, buffer, size);
  return status;
}

Status WriteProfileString(const char* app, const char* key, const char* value,
                          const char* file) {
  // The call that flushes the Windows profile cache: we have no cache, so it just succeeds.
  if (!app && !key && !value) return Status::Ok();
  if (!app) return Status::Error(StatusCode::kInvalidArgument);
  if (StagedProfile* staged = StagedFileFor(file)) {
    staged->Write(app, key, value);
    return Status::Ok();
  }
  std::string path;
  Status status = ResolveProfilePath(file, &path);
  if (!status.ok()) return status;
  if (IsBareName(file)) {
    // The profile folder is made on the first write into it.
    status = os::CreateFolders(ProfileFolder());
    if (!status.ok()) return status;
  }
  return LockedWrite(app, key, value, path);
}

}  // namespace tolvex::platform
