// Where the keys of the previous and next buttons live for the accessors: selector 0 addresses
// the previous button, selector 1 the next one (keys/NavButtonKeys.h), any other selector
// nothing.
#ifndef TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H
#define TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H

#include "keys/NavButtonKeys.h"
#include "template/ProfileAccess.h"

namespace tolvex::navbuttons {

// The section of the navigation button `selector` of `file`; inert for selectors other than
// 0 and 1, so that every accessor returns 1 without touching the file or its arguments.
inline KeyTarget NavTarget(const CString& file, unsigned int selector) {
  if (selector == 0) return KeyTarget::In(file, kPrevious.section, kPrevious.fill);
  if (selector == 1) return KeyTarget::In(file, kNext.section, kNext.fill);
  return KeyTarget::Inert();
}

}  // namespace tolvex::navbuttons

#endif  // TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H
