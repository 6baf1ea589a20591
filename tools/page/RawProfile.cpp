// Platform-level reads of template files (see RawProfile.h).
#include "tools/page/RawProfile.h"

#include "tools/page/AsciiCase.h"

#include <tolvex/Profile.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace menutool {
namespace {

// A default no template holds, so that a missing key can be told from any stored text.
constexpr char kAbsent[] = "\x01menutemplate:absent\x01";
constexpr DWORD kLargestRead = 1u << 24;

// Reads with a buffer that grows until the result no longer fills it: the profile functions
// return size - 1 for a value that was cut, and size - 2 for a cut list of names.
std::string ReadGrowing(const char* section, const char* key, const char* def,
                        const std::string& path, DWORD slack) {
  for (DWORD size = 1024;; size *= 2) {
    std::vector<char> buf(size);
    DWORD n = GetPrivateProfileStringA(section, key, def, buf.data(), size, path.c_str());
    if (n + slack < size || size >= kLargestRead) return std::string(buf.data(), n);
  }
}

}  // namespace

std::optional<std::string> RawValue(const std::string& path, const std::string& section,
                                    const std::string& key) {
  std::string value = ReadGrowing(section.c_str(), key.c_str(), kAbsent, path, 1);
  if (value == kAbsent) return std::nullopt;
  return value;
}

bool WriteRawValue(const std::string& path, const std::string& section, const std::string& key,
                   const std::optional<std::string>& value) {
  return WritePrivateProfileStringA(section.c_str(), key.c_str(), value ? value->c_str() : nullptr,
                                    path.c_str()) != 0;
}

// Splits a list of names, each ended by a NUL.
static std::vector<std::string> SplitNames(const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < list.size();) {
    std::size_t end = list.find('\0', at);
    if (end == std::string::npos) end = list.size();
    names.push_back(list.substr(at, end - at));
    at = end + 1;
  }
  return names;
}

std::vector<std::string> SectionNames(const std::string& path) {
  return SplitNames(ReadGrowing(nullptr, nullptr, "", path, 2));
}

std::vector<std::string> KeyNames(const std::string& path, const std::string& section) {
  return SplitNames(ReadGrowing(section.c_str(), nullptr, "", path, 2));
}

std::optional<long long> LayoutInUse(const std::string& path) {
  std::optional<std::string> count = RawValue(path, "Background", "CurrentNumberOfButton");
  if (!count || *count == "error") return std::nullopt;
  // atoi's reading, as the library takes it, kept to 32 bits as the library prints it.
  return static_cast<int32_t>(std::atoi(count->c_str()));
}

std::optional<long long> LayoutCount(const std::string& section) {
  // Section names match without regard to case, as the profile functions match them.
  static const std::string prefix = "NumOfButton";
  if (!StartsIgnoringCase(section, prefix))
    return std::nullopt;
  std::string digits = section.substr(prefix.size());
  std::size_t start = (!digits.empty() && digits[0] == '-') ? 1 : 0;
  if (digits.size() == start || digits.size() > 11 ||
      digits.find_first_not_of("0123456789", start) != std::string::npos)
    return std::nullopt;
  // Only names the library can produce: "%d" prints no leading zeros.
  long long n = std::atoll(digits.c_str());
  if (std::to_string(n) != digits || n < INT32_MIN || n > INT32_MAX) return std::nullopt;
  return n;
}

}  // namespace menutool
