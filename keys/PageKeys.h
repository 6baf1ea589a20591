// The key families of the page-wide settings and of the background title, all kept in the
// section "Background": one row per accessor pair, with its keys in the order written and read.
#ifndef TOLVEX_KEYS_PAGEKEYS_H
#define TOLVEX_KEYS_PAGEKEYS_H

#include "keys/KeyFamily.h"

namespace tolvex::background {

inline constexpr char kSection[] = "Background";

// Page-wide settings.
inline constexpr KeyFamily<1> kTemplateMode{{"NTSC"}, Encoding::Flag, kShortRead};
inline constexpr KeyFamily<1> kBackgroundBmp{{"BackgroundBmp"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kMusic{{"BackgroundMusic"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kMaxButtons{{"MaximumNumberOfButton"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kCurrentButtons{{"CurrentNumberOfButton"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kOutputBmp{{"OutputBmp"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kOutMask{{"OutMask"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kAddPrev{{"AddPrevButton"}, Encoding::Flag, kShortRead};
inline constexpr KeyFamily<1> kAddNext{{"AddNextButton"}, Encoding::Flag, kShortRead};

// Background title. The title text is read with 80 bytes, its font name with 1000.
inline constexpr KeyFamily<1> kTitle{{"BackgroundTitle"}, Encoding::Text, kShortRead};
inline constexpr KeyFamily<2> kTitlePosition{
    {"BackgroundTitlePosition_x", "BackgroundTitlePosition_y"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<1> kTitleFontName{{"BackgroundTitleFont_Name"}, Encoding::Text, kLongRead};
inline constexpr KeyFamily<1> kTitleFontSize{{"BackgroundTitleFont_Size"}, Encoding::Integer, kShortRead};
inline constexpr KeyFamily<3> kTitleFontStyle{
    {"BackgroundTitleFont_Italic", "BackgroundTitleFont_Bold", "BackgroundTitleFont_Underline"},
    Encoding::Flag, kShortRead};
inline constexpr KeyFamily<3> kTitleFontRGB{
    {"BackgroundTitleFont_R", "BackgroundTitleFont_G", "BackgroundTitleFont_B"},
    Encoding::Integer, kShortRead};

}  // namespace tolvex::background

#endif  // TOLVEX_KEYS_PAGEKEYS_H
