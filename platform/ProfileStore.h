// The profile functions as operations on files, with a Status for every failure: where a
// profile path leads, and the read and the locked read-modify-replace of a write. Above the
// OS seam and below the extern "C" facade. Safe from any thread and process: every change
// of a file happens under its folder's lock and is an atomic replace; reads take no lock.
#ifndef TOLVEX_PLATFORM_PROFILESTORE_H
#define TOLVEX_PLATFORM_PROFILESTORE_H

#include <cstdint>
#include <string>

#include "platform/Status.h"

namespace tolvex::platform {

// The file a profile path names: a bare file name (no '/' or '\') lives in the profile
// folder, anything else is taken as given (relative paths from the current folder).
// kInvalidArgument for an empty path.
Status ResolveProfilePath(const char* file, std::string* path);

// GetPrivateProfileStringA: fills `buffer` and sets `length` to the bytes before its NUL.
// A file that cannot be read reads as an empty one, so the default applies; the Status says
// why it could not be read.
Status ReadProfileString(const char* app, const char* key, const char* defaultText,
                         char* buffer, uint32_t size, const char* file, uint32_t* length);

// WritePrivateProfileStringA: set (all given), remove a key (`value` NULL) or a section
// (`key` NULL). A failure leaves the file as it was.
Status WriteProfileString(const char* app, const char* key, const char* value, const char* file);

// `count` such writes of keys in section `app`, in order, stopping at the first failure;
// `written` gets how many succeeded. Inside an edit the file is found once for all of them.
Status WriteProfileStrings(const char* app, const char* const* keys, const char* const* values,
                           int count, const char* file, int* written);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_PROFILESTORE_H
