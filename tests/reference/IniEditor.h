// The changes of WritePrivateProfileStringA as edits of the file's text: set a value, remove
// a key, remove a section. Each returns the file's new bytes, in which only the line concerned
// changed (or one line was added), or nothing when the file must stay as it is. OS-unaware.
#ifndef TOLVEX_TESTS_REFERENCE_INIEDITOR_H
#define TOLVEX_TESTS_REFERENCE_INIEDITOR_H

#include <optional>
#include <string>
#include <string_view>

#include "reference/IniDocument.h"

namespace tolvex::reference {

// Sets `key` of section `app` to `value`. Names are matched trimmed, ignoring ASCII case; the
// value loses its leading blanks. A new key goes after the last line of the section, a new
// section at the end of the file, spelled as given minus leading blanks, with CRLF.
std::optional<std::string> SetValue(const IniDocument& document, std::string_view bytes,
                                    std::string_view app, std::string_view key,
                                    std::string_view value);

// Removes the first key called `key` (untrimmed, ASCII case ignored) from the sections called
// `app`, looking through each of them in file order.
std::optional<std::string> RemoveKey(const IniDocument& document, std::string_view bytes,
                                     std::string_view app, std::string_view key);

// Removes the first section called `app` (untrimmed, ASCII case ignored) with all its lines.
std::optional<std::string> RemoveSection(const IniDocument& document, std::string_view bytes,
                                         std::string_view app);

// WritePrivateProfileStringA's change of `bytes` (non-NULL `app`): removes the section when
// `key` is NULL, the key when `value` is NULL, else sets the value.
std::optional<std::string> EditProfileText(const IniDocument& document, std::string_view bytes,
                                           const char* app, const char* key, const char* value);

}  // namespace tolvex::reference

#endif  // TOLVEX_TESTS_REFERENCE_INIEDITOR_H
