// The layout lookup and the targets of the per-button keys.
#include "buttons/LayoutLookup.h"

#include <tolvex/Profile.h>

#include <cstdlib>
#include <cstring>

#include "keys/ButtonKeys.h"
#include "keys/NavButtonKeys.h"
#include "keys/PageKeys.h"

namespace tolvex::buttons {

namespace {

// The default of the count's read. Not the "default" of the other reads: a count stored as
// "default" passes the lookup and selects layout 0.
constexpr const char kNoCount[] = "error";

// Whether `text` is how "%d" prints the number atoi reads from it: up to nine digits, no sign,
// no leading zero. Such a count names its layout as it stands.
bool IsPrintedCount(const char* text) {
  size_t digits = 0;
  while (text[digits] >= '0' && text[digits] <= '9') ++digits;
  return text[digits] == '\0' && digits >= 1 && digits <= 9 && (text[0] != '0' || digits == 1);
}

}  // namespace

bool LookUpLayoutSection(const CString& file, char (&room)[kShortRead], KeyParts* section) {
  room[0] = '\0';
  GetPrivateProfileStringA(background::kSection, background::kCurrentButtons.keys[0], kNoCount,
                           room, kShortRead, file);
  if (room[0] == kNoCount[0] && std::strcmp(room, kNoCount) == 0) return false;
  if (!IsPrintedCount(room)) {
    const IntegerDigits printed(std::atoi(room));
    std::strcpy(room, printed.c_str());
  }
  *section = KeyParts{kLayoutPrefix, room, {}};
  return true;
}

KeyTarget ButtonTarget(const CString& file, unsigned int index) {
  char room[kShortRead];
  KeyParts section;
  if (!LookUpLayoutSection(file, room, &section)) return KeyTarget::Unusable();
  // 4294967295 names button -1.
  return KeyTarget::In(file, section, IntegerDigits(static_cast<int>(index)).view());
}

KeyTarget ButtonNavLinkTarget(const CString& file, unsigned int index) {
  char room[kShortRead];
  KeyParts section;
  if (!LookUpLayoutSection(file, room, &section)) return KeyTarget::Unusable();
  if (index == 0) section = KeyParts{navbuttons::kPrevious.section, {}, {}};
  if (index == 1) section = KeyParts{navbuttons::kNext.section, {}, {}};
  return KeyTarget::In(file, section, IntegerDigits(static_cast<int>(index)).view());
}

}  // namespace tolvex::buttons
