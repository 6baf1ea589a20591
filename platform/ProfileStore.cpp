// Reads and writes of profile files: path rules, then the indexed form of the file from the
// per-thread cache, or the calling thread's edit of the file. The cache proves each time that
// the file is unchanged, so every read sees every change made by any writer; a write proves it
// again under the folder lock before it changes one line.
#include "platform/ProfileStore.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/FileReplace.h"
#include "platform/IndexedIni.h"
#include "platform/Os.h"
#include "platform/ParseCache.h"
#include "platform/ProfileEdit.h"
#include "platform/ProfileFolder.h"
#include "platform/StagedProfile.h"

namespace tolvex::platform {
namespace {

bool IsBareName(const char* file) { return std::strpbrk(file, "/\\") == nullptr; }

// A per-call write is a one-key edit of the file's indexed form: under the folder lock the form
// is proved current (or read again), one line changes, and the form's bytes replace the file
// as an edit's commit writes them. The changed form stays cached for the calls that follow.
Status LockedWrite(const char* app, const char* key, const char* value,
                   const std::string& path) {
  os::FolderLock lock;
  std::string target;
  bool exists = false;
  Status status = LockForReplace(path, &lock, &target, &exists);
  if (!status.ok()) return status;
  std::shared_ptr<IndexedIni> form;
  if (exists) {
    form = FileToChange(target, &status);
    if (!status.ok()) return status;
  } else if (!value || !key) {
    // Windows leaves an empty file behind when asked to remove from a missing one.
    return os::ReplaceFile(target, "");
  } else {
    form = std::make_shared<IndexedIni>();
  }

  if (!form->Write(app, key, value)) return Status::Ok();
  status = os::ReplaceFileFrom(
      target, [&](const ByteSink& write) { return form->WriteBytes(write); });
  if (status.ok()) {
    FileWritten(target, form);
  } else {
    ForgetFile(target);
  }
  return status;
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
  std::string path;
  Status status = ResolveProfilePath(file, &path);
  std::shared_ptr<const IndexedIni> parsed =
      status.ok() ? ParsedFile(path, &status) : std::make_shared<const IndexedIni>();
  *length = parsed->Read(app, key, defaultText, buffer, size);
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

Status WriteProfileStrings(const char* app, const char* const* keys, const char* const* values,
                           int count, const char* file, int* written) {
  *written = 0;
  if (count > 0 && app) {
    if (StagedProfile* staged = StagedFileFor(file)) {
      if (std::all_of(keys, keys + count, [](const char* key) { return key != nullptr; }) &&
          std::all_of(values, values + count, [](const char* value) { return value != nullptr; })) {
        staged->SetValues(app, keys, values, static_cast<size_t>(count));
        *written = count;
      }
      for (; *written < count; ++*written) staged->Write(app, keys[*written], values[*written]);
      return Status::Ok();
    }
  }
  for (; *written < count; ++*written) {
    const Status status = WriteProfileString(app, keys[*written], values[*written], file);
    if (!status.ok()) return status;
  }
  return Status::Ok();
}

}  // namespace tolvex::platform
