// GetPrivateProfileStringA, WritePrivateProfileStringA and CopyFileA for systems without
// Win32: a thin facade that collapses the Status of the layer below to the Win32 results.
// Nothing escapes: an allocation failure becomes a failed call (for a read, an empty result).
// Thread-safe as the layer below is.
#include <tolvex/Profile.h>

#include <cerrno>
#include <memory>
#include <string>

#include "platform/FileReplace.h"
#include "platform/Os.h"
#include "platform/ProfileEdit.h"
#include "platform/ProfileStore.h"
#include "platform/StagedProfile.h"

using tolvex::platform::Status;

extern "C" {

DWORD GetPrivateProfileStringA(LPCSTR app, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size,
                               LPCSTR file) {
  if (!buf || size == 0) return 0;
  try {
    uint32_t length = 0;
    tolvex::platform::ReadProfileString(app, key, def, buf, size, file, &length);
    return length;
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    buf[0] = '\0';
    return 0;
  }
}

BOOL WritePrivateProfileStringA(LPCSTR app, LPCSTR key, LPCSTR value, LPCSTR file) {
  try {
    return tolvex::platform::WriteProfileString(app, key, value, file).ok() ? TRUE : FALSE;
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return FALSE;
  }
}

int TolvexWritePrivateProfileStrings(LPCSTR app, const LPCSTR* keys, const LPCSTR* values,
                                     int count, LPCSTR file) {
  if (count <= 0 || !keys || !values) return 0;
  int written = 0;
  try {
    tolvex::platform::WriteProfileStrings(app, keys, values, count, file, &written);
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
  }
  return written;
}

BOOL CopyFileA(LPCSTR existing, LPCSTR newFile, BOOL failIfExists) {
  if (!existing || !newFile) return FALSE;
  try {
    return tolvex::platform::os::CopyFile(existing, newFile, failIfExists != FALSE).ok() ? TRUE
                                                                                        : FALSE;
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return FALSE;
  }
}

// The C handle is the edit itself.
struct TolvexProfileEdit {
  std::unique_ptr<tolvex::platform::ProfileEdit> edit;
};

TolvexProfileEdit* TolvexBeginProfileEdit(LPCSTR file) {
  try {
    auto handle = std::make_unique<TolvexProfileEdit>();
    if (!tolvex::platform::ProfileEdit::Begin(file, &handle->edit).ok()) return nullptr;
    return handle.release();
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return nullptr;
  }
}

BOOL TolvexProfileEditIsOpen(const TolvexProfileEdit* edit) {
  return edit && edit->edit->IsOpen() ? TRUE : FALSE;
}

BOOL TolvexCommitProfileEdit(TolvexProfileEdit* edit) {
  if (!edit) return FALSE;
  try {
    return edit->edit->Commit().ok() ? TRUE : FALSE;
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return FALSE;
  }
}

void TolvexEndProfileEdit(TolvexProfileEdit* edit) { delete edit; }

BOOL TolvexReadProfileEdit(LPCSTR file, TolvexTakeBytes take, void* context) {
  if (!take) return FALSE;
  try {
    const tolvex::platform::StagedProfile* staged = tolvex::platform::StagedFileFor(file);
    if (!staged) return FALSE;
    staged->WriteBytes([&](std::string_view bytes) {
      take(context, bytes.data(), bytes.size());
      return Status::Ok();
    });
    return TRUE;
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return FALSE;
  }
}

int TolvexReplaceFile(LPCSTR path, const void* bytes, size_t size) {
  if (!path || (!bytes && size != 0)) return EINVAL;
  try {
    const Status status = tolvex::platform::ReplaceWholeFile(
        path, std::string_view(static_cast<const char*>(bytes), size));
    return tolvex::platform::ErrnoFromStatus(status);
  } catch (...) {  // std::bad_alloc, the only exception the layer below can raise
    return ENOMEM;
  }
}

}  // extern "C"
