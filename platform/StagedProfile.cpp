// The staged copy of an edit, kept as the file's bytes with their parse.
#include "platform/StagedProfile.h"

#include "platform/IniDocument.h"
#include "platform/IniEditor.h"
#include "platform/IniQuery.h"

namespace tolvex::platform {

StagedProfile::StagedProfile(std::string bytes, bool exists)
    : m_bytes(std::move(bytes)), m_exists(exists) {}

StagedProfile::StagedProfile(const StagedProfile& other)
    : m_bytes(other.m_bytes), m_exists(other.m_exists), m_changed(other.m_changed) {}

StagedProfile& StagedProfile::operator=(StagedProfile&& other) noexcept = default;
StagedProfile::~StagedProfile() = default;

const IniDocument& StagedProfile::Document() {
  if (!m_document) m_document = std::make_unique<IniDocument>(m_bytes);
  return *m_document;
}

uint32_t StagedProfile::Read(const char* app, const char* key, const char* defaultText,
                             char* buffer, uint32_t size) {
  return ReadProfileText(Document(), app, key, defaultText, buffer, size);
}

void StagedProfile::Write(const char* app, const char* key, const char* value) {
  if (!m_exists && (!key || !value)) {
    // Windows leaves an empty file behind when asked to remove from a missing one.
    m_exists = m_changed = true;
    return;
  }
  std::optional<std::string> changed = EditProfileText(Document(), m_bytes, app, key, value);
  if (!changed) return;
  m_bytes = std::move(*changed);
  m_document.reset();
  m_exists = m_changed = true;
}

}  // namespace tolvex::platform
