// A whole menu page built through CMenuTemplate: page settings, then for each button count
// from 1 to `maxCount` the layout of that count with every property of every button. Shared by
// the edit tests and the benchmarks. Returns 1 when every setter returned 1.
#ifndef TOLVEX_TESTS_SUPPORT_FULLPAGE_H
#define TOLVEX_TESTS_SUPPORT_FULLPAGE_H

#include <tolvex/MenuTemplate.h>

#include <string>

namespace tolvex::test {

inline int BuildFullPage(CMenuTemplate& menu, unsigned maxCount) {
  int ok = menu.SetTemplateMode(1) & menu.SetBkBMPFileName("background.bmp") &
           menu.SetMaxNumOfButtons(maxCount) & menu.SetOutputBMPFile("menu.bmp") &
           menu.SetOutMaskFile("mask.bmp") & menu.SetAddPrevButton(1) &
           menu.SetAddNextButton(1) & menu.SetBkTitle("Holidays");
  for (unsigned nav = 0; nav < 2; ++nav)
    ok &= menu.SetNavBtnPosition(nav, tagRECT{10, 20, 30, 40}) & menu.SetNavInfo(nav, 1, 2) &
          menu.SetNavBtnBMPFile(nav, nav ? "next.bmp" : "prev.bmp");
  for (unsigned count = 1; count <= maxCount; ++count) {
    ok &= menu.SetCurrentNumOfButtons(count);
    for (unsigned i = 0; i < count; ++i) {
      const int x = static_cast<int>(i % 6) * 110, y = static_cast<int>(i / 6) * 80;
      const CString title(("Chapter " + std::to_string(i + 1)).c_str());
      ok &= menu.SetBtnPosition(i, tagRECT{x, y, x + 100, y + 70}) &
            menu.SetBtnFrameSize(i, 2) & menu.SetBtnFrameRGB(i, 255, 200, 0) &
            menu.SetBtnFrameBMP(i, "frame.bmp") & menu.SetBtnBMP(i, "button.bmp") &
            menu.SetBtnNavInfo(i, i / 6, i % 6) & menu.SetBtnTitle(i, title) &
            menu.SetBtnTitlePosition(i, tagPOINT{x + 5, y + 75}) &
            menu.SetBtnTitleFontName(i, "DejaVu Sans") & menu.SetBtnTitleFontSize(i, 18) &
            menu.SetBtnTitleFontStyle(i, 0, 1, 0) & menu.SetBtnTitleFontRGB(i, 255, 255, 255);
    }
  }
  return ok;
}

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_FULLPAGE_H
