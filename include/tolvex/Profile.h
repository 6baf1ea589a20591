// The Windows profile-file functions and CopyFileA, as libTolvexProfile provides them. They
// read and write INI files exactly as Windows does, so a file written by either side reads the
// same on the other. Safe to call from several threads and processes at once: every change of
// a file is a locked, atomic replace.
//
// On Windows the names GetPrivateProfileStringA, WritePrivateProfileStringA and CopyFileA are
// kernel32's, which keep no lock, make no atomic replace and have no edits, so ours carry the
// prefix Tolvex there (TolvexGetPrivateProfileStringA, ...). A program that defines
// TOLVEX_OWN_PROFILE_NAMES before including this header calls ours by the Win32 names, as the
// Tolvex libraries themselves do; without it, those names still reach kernel32.
#ifndef TOLVEX_PROFILE_H
#define TOLVEX_PROFILE_H

#include <tolvex/WinTypes.h>

#include <stddef.h>

#if defined(_WIN32)
#  if defined(TOLVEX_BUILDING_PROFILE)
#    define TOLVEX_PROFILE_API __declspec(dllexport)
#  else
#    define TOLVEX_PROFILE_API __declspec(dllimport)
#  endif
#  define TOLVEX_PROFILE_NAME(name) Tolvex##name
#  if defined(TOLVEX_OWN_PROFILE_NAMES)
#    define GetPrivateProfileStringA TolvexGetPrivateProfileStringA
#    define WritePrivateProfileStringA TolvexWritePrivateProfileStringA
#    define CopyFileA TolvexCopyFileA
#  endif
#else
#  define TOLVEX_PROFILE_API __attribute__((visibility("default")))
#  define TOLVEX_PROFILE_NAME(name) name
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Reads the value of `key` in section `app` of `file` into `buf` (at most `size` - 1 bytes and
// a terminating NUL) and returns the number of bytes before the NUL. When the file, section or
// key is missing, `def` is used instead (NULL counts as ""). Surrounding quotes are stripped.
// With `app` NULL, lists the section names; with `key` NULL, lists the keys of `app`: each name
// followed by NUL, the list ended by a second NUL, cut to fit `size` as Windows cuts it.
// A file name without a directory part is looked up in the profile folder (see README).
TOLVEX_PROFILE_API DWORD TOLVEX_PROFILE_NAME(GetPrivateProfileStringA)(LPCSTR app, LPCSTR key,
                                                                       LPCSTR def, LPSTR buf,
                                                                       DWORD size, LPCSTR file);

// Sets `key` in section `app` of `file` to `value`, creating the file, section and key as
// needed; NULL `value` removes the key, NULL `key` removes the section. Only the line concerned
// changes; every other byte of the file is kept. Returns FALSE and leaves the file unchanged
// when it cannot be written (missing folder, read-only file, disk full, empty path).
TOLVEX_PROFILE_API BOOL TOLVEX_PROFILE_NAME(WritePrivateProfileStringA)(LPCSTR app, LPCSTR key,
                                                                        LPCSTR value, LPCSTR file);

// Sets `count` keys of section `app` of `file`, in order, as that many calls of
// WritePrivateProfileStringA would, stopping at the first that fails.
// Returns how many were set. Inside an edit, the file is looked up once for all of them.
TOLVEX_PROFILE_API int TolvexWritePrivateProfileStrings(LPCSTR app, const LPCSTR* keys,
                                                        const LPCSTR* values, int count,
                                                        LPCSTR file);

// Copies `existing` to `newFile`. Returns FALSE when the source is missing, when
// `failIfExists` is set and the target exists, or when the target is read-only.
TOLVEX_PROFILE_API BOOL TOLVEX_PROFILE_NAME(CopyFileA)(LPCSTR existing, LPCSTR newFile,
                                                       BOOL failIfExists);

// Edits: many changes of one file written at once, with one atomic replace (the C form of
// tolvex::TemplateEdit, <tolvex/TemplateEdit.h>, which describes them in full).
// TolvexBeginProfileEdit starts an edit of `file` (the path rules above) for the calling
// thread: until it ends, that thread's reads and writes of the file, by any name, go to a copy
// in memory, and writers in other threads and processes wait. Returns NULL when the file
// cannot be edited (empty path, missing folder, read-only file, or a lock that could only be
// taken at the risk of a deadlock); the calls then go to the file as usual.
typedef struct TolvexProfileEdit TolvexProfileEdit;
TOLVEX_PROFILE_API TolvexProfileEdit* TolvexBeginProfileEdit(LPCSTR file);
// TRUE while the edit stages changes: begun, and neither committed nor ended by an outer edit.
TOLVEX_PROFILE_API BOOL TolvexProfileEditIsOpen(const TolvexProfileEdit* edit);
// Writes every staged change with one durable atomic replace and ends the edit. FALSE when the
// file could not be written (it is then left byte for byte as it was), when another program
// changed or replaced the file since the edit began (nothing is written), or the edit was not
// open. FALSE, with the edit left open, when called from a thread or process other than the
// one that began the edit.
TOLVEX_PROFILE_API BOOL TolvexCommitProfileEdit(TolvexProfileEdit* edit);
// Frees the edit, dropping the changes of an edit that was not committed, and releases its
// lock, from any thread. In a process forked while the edit was open it frees only the
// child's copy; the parent's lock stays. NULL is ignored. A thread that ends with an edit
// open drops it as if this were called.
TOLVEX_PROFILE_API void TolvexEndProfileEdit(TolvexProfileEdit* edit);
// When the calling thread has an edit of `file` open (`file` named by the path rules above),
// hands `take` the file's bytes as the edit holds them, in order and in one or more pieces,
// and returns TRUE; else returns FALSE and calls nothing. A reader that parses the file itself
// (the renderer does) sees the edit's changes through this.
typedef void (*TolvexTakeBytes)(void* context, const char* bytes, size_t size);
TOLVEX_PROFILE_API BOOL TolvexReadProfileEdit(LPCSTR file, TolvexTakeBytes take, void* context);

// Replaces (or creates) the file `path` with the `size` bytes at `bytes`, as the functions
// above replace a profile file: atomically and durably (a reader, a crash or a full disk
// leaves the old bytes or the new, never a mix, and no temporary file), under the lock of its
// folder, keeping a symbolic link and the file's mode, owner and group. Unlike the profile
// functions, a bare name means the current folder. Returns 0, or the errno value that says
// why the file was left as it was: EISDIR for a folder, EINVAL for no path or a file that is
// no regular file (FIFO, device), EACCES for a read-only file or one the calling thread is
// editing, ENOENT for a missing folder, EFBIG or ENOSPC when the bytes did not fit.
TOLVEX_PROFILE_API int TolvexReplaceFile(LPCSTR path, const void* bytes, size_t size);

#ifdef __cplusplus
}
#endif

#endif  // TOLVEX_PROFILE_H
