// Drawing a title: the font matched by family name through fontconfig, the text laid out by
// pango and painted anti-aliased by cairo; and measuring it the same way, for checks that
// run before drawing (the menutemplate tool compiles this file too). Reentrant; pango's font
// map is per thread.
#ifndef TOLVEX_RENDERER_TITLETEXT_H
#define TOLVEX_RENDERER_TITLETEXT_H

#include <cairo.h>

#include <string>

#include "renderer/Page.h"

namespace tolvex::render {

// The family used when a title names none, and the one fontconfig falls back to when the
// named family is not installed.
inline constexpr const char* kDefaultFontFamily = "DejaVu Sans";

// Draws `title` onto `cr`: its layout box's top-left corner at the title's position, or the
// box centred on `area` when the title has no position. The size is the em height in
// pixels. Text that is not valid UTF-8 is taken as Windows-1252, the application's code page.
void DrawTitle(cairo_t* cr, const Title& title, const Rect& area);

// The pixels DrawTitle(title, area) paints into, laid out the same way: its ink box, widened to
// whole pixels. Empty for an empty text. Used to find titles that are cut off or run over
// something else before anything is drawn.
Rect TitleInk(const Title& title, const Rect& area);

// The font family the title is drawn with: the named one when fontconfig has it, otherwise the
// one it falls back to. Empty when no font at all can be loaded.
std::string FontFamilyUsed(const Title& title);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_TITLETEXT_H
