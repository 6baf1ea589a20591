// The key families of the previous and next buttons. The previous button lives in the section
// "PrevButton" with keys "ButtonPrev...", the next one in "NextButton" with "ButtonNext...":
// the "%s" of each pattern takes the fill of its button.
#ifndef TOLVEX_KEYS_NAVBUTTONKEYS_H
#define TOLVEX_KEYS_NAVBUTTONKEYS_H

#include "keys/KeyFamily.h"

namespace tolvex::navbuttons {

struct NavButtonPlace {
  const char* section;
  const char* fill;
};
inline constexpr NavButtonPlace kPrevious{"PrevButton", "Prev"};
inline constexpr NavButtonPlace kNext{"NextButton", "Next"};

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

}  // namespace tolvex::navbuttons

#endif  // TOLVEX_KEYS_NAVBUTTONKEYS_H
