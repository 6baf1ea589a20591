// The layout lookup of the numbered buttons: "CurrentNumberOfButton" of the section
// "Background", read afresh on every call, names the layout section "NumOfButton<n>" in which
// every per-button key lives. Reads only; keeps nothing between calls.
#ifndef TOLVEX_BUTTONS_LAYOUTLOOKUP_H
#define TOLVEX_BUTTONS_LAYOUTLOOKUP_H

#include <tolvex/CString.h>

#include "template/ProfileAccess.h"

namespace tolvex::buttons {

// The layout section of the current button count of `file`, as the pieces of its name, the
// count kept in `room`; false when the count is missing (no file, no section, no key) or holds
// exactly "error".
bool LookUpLayoutSection(const CString& file, char (&room)[kShortRead], KeyParts* section);

// The keys of button `index` in the layout section; unusable when the lookup fails.
KeyTarget ButtonTarget(const CString& file, unsigned int index);

// Where SetBtnNavInfo writes the navigation values of button `index`: the sections
// "PrevButton" and "NextButton" for the indexes 0 and 1, else the layout section. Unusable
// when the lookup fails, for the indexes 0 and 1 as well.
KeyTarget ButtonNavLinkTarget(const CString& file, unsigned int index);

}  // namespace tolvex::buttons

#endif  // TOLVEX_BUTTONS_LAYOUTLOOKUP_H
