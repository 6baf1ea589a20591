// The copy of a profile file that an edit stages in memory: the reads and writes of the
// profile functions applied to it by exactly the rules of the file itself, and its bytes for
// the commit. Owned by one edit of one thread.
#ifndef TOLVEX_PLATFORM_STAGEDPROFILE_H
#define TOLVEX_PLATFORM_STAGEDPROFILE_H

#include <cstdint>
#include <memory>
#include <string>

namespace tolvex::platform {

class IniDocument;

class StagedProfile {
 public:
  // The file's bytes when the edit began; `exists` false for a file not made yet.
  StagedProfile(std::string bytes, bool exists);
  StagedProfile(const StagedProfile& other);
  StagedProfile& operator=(StagedProfile&& other) noexcept;
  ~StagedProfile();

  // Whether a write changed the copy, so that the commit must write it.
  bool changed() const { return m_changed; }
  std::string Bytes() const { return m_bytes; }

  // GetPrivateProfileStringA on the copy.
  uint32_t Read(const char* app, const char* key, const char* defaultText, char* buffer,
                uint32_t size);
  // WritePrivateProfileStringA on the copy (`app` not NULL).
  void Write(const char* app, const char* key, const char* value);

 private:
  const IniDocument& Document();

  std::string m_bytes;
  bool m_exists;
  bool m_changed = false;
  std::unique_ptr<IniDocument> m_document;  // the parse of m_bytes, made on first use
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_STAGEDPROFILE_H
