// The key families of the numbered buttons, all in the layout section of the current count.
// The "%d" of each pattern takes the button index; in the position keys it stands in the
// middle, in all others at the end. Every per-button value is read with 80 bytes.
#ifndef TOLVEX_KEYS_BUTTONKEYS_H
#define TOLVEX_KEYS_BUTTONKEYS_H

#include "keys/KeyFamily.h"

namespace tolvex::buttons {

// The layout section of the button count n is this prefix followed by n in decimal.
inline constexpr char kLayoutPrefix[] = "NumOfButton";

// Frame, pictures and position. Edges in the order left, right, top, bottom.
inline constexpr KeyFamily<4> kPosition{
    {"ButtonPosition%d_left", "ButtonPosition%d_right", "ButtonPosition%d_top",
     "ButtonPosition%d_bottom"},
    Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kFrameSize{{"ButtonFrameThickness%d"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<3> kFrameRGB{
    {"ButtonFrame_R%d", "ButtonFrame_G%d", "ButtonFrame_B%d"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kFrameBmp{{"ButtonFrameBmp%d"}, Encoding::Text, kShortRead};
inline constexpr KeyFamily<1> kBmp{{"ButtonBmp%d"}, Encoding::Text, kShortRead};

// Navigation values, r then c.
inline constexpr KeyFamily<2> kNavInfo{
    {"ButtonNavigationInfo_r%d", "ButtonNavigationInfo_c%d"}, Encoding::Integer, kShortRead};

// Title.
inline constexpr KeyFamily<1> kTitle{{"ButtonTitle%d"}, Encoding::Text, kShortRead};
inline constexpr KeyFamily<2> kTitlePosition{
    {"ButtonTitlePosition%d_x", "ButtonTitlePosition%d_y"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kTitleFontName{{"ButtonTitleFont_Name%d"}, Encoding::Text, kShortRead};
inline constexpr KeyFamily<1> kTitleFontSize{{"ButtonTitleFont_Size%d"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<3> kTitleFontStyle{
    {"ButtonTitleFont_Italic%d", "ButtonTitleFont_Bold%d", "ButtonTitleFont_Underline%d"},
    Encoding::Flag, kShortRead};
inline constexpr KeyFamily<3> kTitleFontRGB{
    {"ButtonTitleFont_R%d", "ButtonTitleFont_G%d", "ButtonTitleFont_B%d"}, Encoding::Integer,
    kShortRead};

}  // namespace tolvex::buttons

#endif  // TOLVEX_KEYS_BUTTONKEYS_H
