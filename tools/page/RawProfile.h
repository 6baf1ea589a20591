// Reads of a template file through the platform's profile functions (<tolvex/Profile.h>),
// for what CMenuTemplate cannot say: whether a key holds the reserved text "default" rather
// than being absent, how long a value really is before an 80-byte buffer cuts it, which
// layout sections exist, and which layout "CurrentNumberOfButton" selects even when it does not
// read as a number, and which buttons a layout has keys for. The one write puts a text back as
// it was, for commands that switch layouts inside an edit.
#ifndef TOLVEX_TOOLS_RAWPROFILE_H
#define TOLVEX_TOOLS_RAWPROFILE_H

#include <optional>
#include <string>
#include <vector>

namespace menutool {

// The whole stored value of `key`, or nullopt when the file, section or key is missing.
std::optional<std::string> RawValue(const std::string& path, const std::string& section,
                                    const std::string& key);

// Writes `value` to `key` as it stands, or removes the key for nullopt; false on failure.
bool WriteRawValue(const std::string& path, const std::string& section, const std::string& key,
                   const std::optional<std::string>& value);

// The names of all sections of the file, in file order.
std::vector<std::string> SectionNames(const std::string& path);
// The names of all keys of `section`, in file order.
std::vector<std::string> KeyNames(const std::string& path, const std::string& section);

// The button count whose layout the per-button calls use, found the way the library finds
// it (missing key: none; otherwise the leading integer of the text, 0 when there is none).
std::optional<long long> LayoutInUse(const std::string& path);

// The count of a section named "NumOfButton<count>", or nullopt for any other section.
std::optional<long long> LayoutCount(const std::string& section);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_RAWPROFILE_H
