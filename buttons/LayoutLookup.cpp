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

CString IndexText(unsigned int index) {
  return IntegerText(static_cast<int>(index));  // 4294967295 names button -1
}

}  // namespace

bool LookUpLayoutSection(const CString& file, CString* section) {
  char count[kShortRead];
  count[0] = '\0';
  GetPrivateProfileStringA(background::kSection, background::kCurrentButtons.keys[0], kNoCount,
                           count, kShortRead, file);
  if (std::strcmp(count, kNoCount) == 0) return false;
  *section = kLayoutPrefix;
  *section += IntegerText(std::atoi(count));
  return true;
}

KeyTarget ButtonTarget(const CString& file, unsigned int index) {
  CString section;
  if (!LookUpLayoutSection(file, &section)) return KeyTarget::Unusable();
  return KeyTarget::In(file, section, IndexText(index));
}

KeyTarget ButtonNavLinkTarget(const CString& file, unsigned int index) {
  CString section;
  if (!LookUpLayoutSection(file, &section)) return KeyTarget::Unusable();
  if (index == 0) section = navbuttons::kPrevious.section;
  if (index == 1) section = navbuttons::kNext.section;
  return KeyTarget::In(file, section, IndexText(index));
}

}  // namespace tolvex::buttons
