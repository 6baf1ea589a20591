// Drawing a title with GDI+: the family chosen by our own fallback among the installed fonts,
// the text drawn anti-aliased. Measuring (TitleText.h) draws it the same way. Reentrant.
#ifndef TOLVEX_RENDERER_GDIPLUS_GDIPLUSTEXT_H
#define TOLVEX_RENDERER_GDIPLUS_GDIPLUSTEXT_H

#include "renderer/Page.h"
#include "renderer/TitleText.h"
#include "renderer/gdiplus/Gdiplus.h"

namespace tolvex::render {

// Draws `title` onto `graphics` as TitleText.h describes.
void DrawTitle(Gdiplus::Graphics& graphics, const Title& title, const Rect& area);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_GDIPLUS_GDIPLUSTEXT_H
