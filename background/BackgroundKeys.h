// Where the page-wide keys live for the accessors: the section "Background" of the template
// file. The key families themselves are in keys/PageKeys.h.
#ifndef TOLVEX_BACKGROUND_BACKGROUNDKEYS_H
#define TOLVEX_BACKGROUND_BACKGROUNDKEYS_H

#include "keys/PageKeys.h"
#include "template/ProfileAccess.h"

namespace tolvex::background {

// The section "Background" of `file`.
inline KeyTarget PageTarget(const CString& file) { return KeyTarget::In(file, kSection); }

}  // namespace tolvex::background

#endif  // TOLVEX_BACKGROUND_BACKGROUNDKEYS_H
