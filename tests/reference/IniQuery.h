// The three reads of GetPrivateProfileStringA over a parsed file: one value, the list of
// section names, and the list of a section's keys, each filling the caller's buffer by the
// Windows rules. OS-unaware; works on a document private to the calling thread.
#ifndef TOLVEX_TESTS_REFERENCE_INIQUERY_H
#define TOLVEX_TESTS_REFERENCE_INIQUERY_H

#include <cstdint>

#include "reference/IniDocument.h"

namespace tolvex::reference {

// The value of `key` in section `app` (both trimmed of blanks, ASCII case ignored), or the
// default when the section, the key or its value is missing. `defaultText` may be NULL.
uint32_t ReadValue(const IniDocument& document, const char* app, const char* key,
                   const char* defaultText, char* buffer, uint32_t size);

// The names of all sections with a name, in file order.
uint32_t ListSectionNames(const IniDocument& document, char* buffer, uint32_t size);

// The names of the keys of section `app` (matched untrimmed) that have a value and do not
// start with ';', or the default when there are none to give.
uint32_t ListKeyNames(const IniDocument& document, const char* app, const char* defaultText,
                      char* buffer, uint32_t size);

// GetPrivateProfileStringA over `document`: the section list when `app` is NULL, the key list
// when `key` is NULL, else one value.
uint32_t ReadProfileText(const IniDocument& document, const char* app, const char* key,
                         const char* defaultText, char* buffer, uint32_t size);

}  // namespace tolvex::reference

#endif  // TOLVEX_TESTS_REFERENCE_INIQUERY_H
