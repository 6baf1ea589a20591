// The copy of a profile file that an edit stages in memory: the reads and writes of the
// profile functions applied to its indexed form by exactly the rules of the file itself, and
// its bytes for the commit. Owned by one edit of one thread; copied for nested edits.
#ifndef TOLVEX_PLATFORM_STAGEDPROFILE_H
#define TOLVEX_PLATFORM_STAGEDPROFILE_H

#include <cstdint>
#include <string>

#include "platform/IndexedIni.h"

namespace tolvex::platform {

class StagedProfile {
 public:
  // The file's bytes when the edit began; `exists` false for a file not made yet.
  StagedProfile(std::string_view bytes, bool exists) : m_ini(bytes), m_exists(exists) {
    m_ini.ReserveForChanges(kChangesReserved + bytes.size());
  }

  // Whether a write changed the copy, so that the commit must write it.
  bool changed() const { return m_changed; }
  // Its bytes, in pieces.
  Status WriteBytes(const ByteSink& write) const { return m_ini.WriteBytes(write); }

  // GetPrivateProfileStringA on the copy.
  uint32_t Read(const char* app, const char* key, const char* defaultText, char* buffer,
                uint32_t size) const {
    return m_ini.Read(app, key, defaultText, buffer, size);
  }
  // WritePrivateProfileStringA on the copy (`app` not NULL).
  void Write(const char* app, const char* key, const char* value) {
    if (!m_exists && (!key || !value)) {
      // Windows leaves an empty file behind when asked to remove from a missing one.
      m_exists = m_changed = true;
      return;
    }
    if (m_ini.Write(app, key, value)) m_exists = m_changed = true;
  }
  // That many writes of keys of one section, none of them a removal.
  void SetValues(const char* app, const char* const* keys, const char* const* values,
                 size_t count) {
    if (m_ini.SetValues(app, keys, values, count) != 0) m_exists = m_changed = true;
  }

 private:
  // An edit often builds a whole page: room for about a 36-button page of changes.
  static constexpr size_t kChangesReserved = 1 << 20;
  IndexedIni m_ini;
  bool m_exists;
  bool m_changed = false;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_STAGEDPROFILE_H
