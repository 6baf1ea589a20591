// Measuring a title as Canvas::DrawTitle draws it, for checks that run before drawing (the
// menutemplate tool builds the back end's text file too), and the font it is drawn with.
// Implemented by the drawing back end: cairo/PangoText (fontconfig, pango, cairo) or
// gdiplus/GdiplusText. Reentrant.
#ifndef TOLVEX_RENDERER_TITLETEXT_H
#define TOLVEX_RENDERER_TITLETEXT_H

#include <string>

#include "renderer/Page.h"

namespace tolvex::render {

// The family used when a title names none, and the one drawn when the named family is not
// installed.
inline constexpr const char* kDefaultFontFamily = "DejaVu Sans";

// A title is drawn with its layout box's top-left corner at the title's position, or the box
// centred on `area` when the title has no position. The size is the em height in pixels. Text
// that is not valid UTF-8 is taken as Windows-1252, the application's code page.

// The pixels Canvas::DrawTitle(title, area) paints into, laid out the same way: its ink box,
// widened to whole pixels. Empty for an empty text. Used to find titles that are cut off or run
// over something else before anything is drawn.
Rect TitleInk(const Title& title, const Rect& area);

// The font family the title is drawn with: the named one when it is installed, otherwise the
// one drawn instead. Empty when no font at all can be loaded.
std::string FontFamilyUsed(const Title& title);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_TITLETEXT_H
