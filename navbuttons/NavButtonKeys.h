// The key families of the previous and next buttons. Selector 0 addresses the section
// "PrevButton" and keys "ButtonPrev...", selector 1 "NextButton" and "ButtonNext..."; the
// "%s" of each pattern takes "Prev" or "Next". Any other selector addresses nothing.
#ifndef TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H
#define TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H

#include "template/ProfileAccess.h"

namespace tolvex::navbuttons {

// Edges in the order left, right, top, bottom (not the field order of tagRECT).
inline constexpr KeyFamily<4> kPosition{
    {"Button%sButtonPosition_left", "Button%sButtonPosition_right", "Button%sButtonPosition_top",
     "Button%sButtonPosition_bottom"},
    Encoding::Integer, kShortRead};
inline constexpr KeyFamily<2> kNavInfo{
    {"Button%sNavigationInfo_r", "Button%sNavigationInfo_c"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kFrameSize{{"Button%sFrameThickness"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<3> kFrameRGB{
    {"Button%sFrame_R", "Button%sFrame_G", "Button%sFrame_B"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kFrameBmp{{"Button%sFrameBmp"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kBmp{{"Button%sBmp"}, Encoding::Text, kLongRead};

// The section of the navigation button `selector` of `file`; inert for selectors other than
// 0 and 1, so that every accessor returns 1 without touching the file or its arguments.
inline KeyTarget NavTarget(const CString& file, unsigned int selector) {
  if (selector == 0) return KeyTarget::In(file, "PrevButton", "Prev");
  if (selector == 1) return KeyTarget::In(file, "NextButton", "Next");
  return KeyTarget::Inert();
}

}  // namespace tolvex::navbuttons

#endif  // TOLVEX_NAVBUTTONS_NAVBUTTONKEYS_H
