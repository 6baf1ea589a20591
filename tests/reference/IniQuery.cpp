// The reads of the profile functions: find by the lookup rules, convert to code page 1252,
// and hand the text to the buffer rules. Each read is one linear scan of the document.
#include "reference/IniQuery.h"

#include <string>

#include "platform/ResultBuffer.h"

namespace tolvex::reference {

using platform::CopyNameList;
using platform::CopyValueText;
using platform::TrimDefaultSpaces;

uint32_t ReadValue(const IniDocument& document, const char* app, const char* key,
                   const char* defaultText, char* buffer, uint32_t size) {
  if (size == 0) return 0;
  int section = document.FindSection(document.ToUnits(TrimBlanks(app)));
  if (section >= 0) {
    int entry =
        document.FindEntry(document.sections()[section], document.ToUnits(TrimBlanks(key)));
    if (entry >= 0 && document.lines()[entry].hasValue)
      return CopyValueText(document.Ansi(document.lines()[entry].value), buffer, size);
  }
  return CopyValueText(TrimDefaultSpaces(defaultText ? defaultText : ""), buffer, size);
}

uint32_t ListSectionNames(const IniDocument& document, char* buffer, uint32_t size) {
  std::string list;
  for (const IniSection& section : document.sections()) {
    if (section.name.empty()) continue;
    list += document.Ansi(section.name);
    list.push_back('\0');
  }
  return CopyNameList(list, buffer, size);
}

uint32_t ListKeyNames(const IniDocument& document, const char* app, const char* defaultText,
                      char* buffer, uint32_t size) {
  if (size == 0) return 0;
  std::string list;
  bool firstEmpty = false;
  int found = size > 2 ? document.FindSection(document.ToUnits(app)) : -1;
  if (found >= 0) {
    const IniSection& section = document.sections()[found];
    for (size_t i = section.firstLine; i < section.endLine; ++i) {
      const IniLine& line = document.lines()[i];
      if (line.isHeader || line.dropped || !line.hasValue) continue;
      if (!line.name.empty() && document.text().units[line.name.begin] == ';') continue;
      if (list.empty() && line.name.empty()) firstEmpty = true;
      list += document.Ansi(line.name);
      list.push_back('\0');
    }
  }
  if (list.empty() || firstEmpty)
    return CopyValueText(defaultText ? defaultText : "", buffer, size);
  return CopyNameList(list, buffer, size);
}

uint32_t ReadProfileText(const IniDocument& document, const char* app, const char* key,
                         const char* defaultText, char* buffer, uint32_t size) {
  if (!app) return ListSectionNames(document, buffer, size);
  if (!key) return ListKeyNames(document, app, defaultText, buffer, size);
  return ReadValue(document, app, key, defaultText, buffer, size);
}

}  // namespace tolvex::reference
