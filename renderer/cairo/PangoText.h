// Drawing a title with cairo: the font matched by family name through fontconfig, the text laid
// out by pango and painted anti-aliased. Measuring (TitleText.h) lays it out the same way.
// Reentrant; pango's font map is per thread.
#ifndef TOLVEX_RENDERER_CAIRO_PANGOTEXT_H
#define TOLVEX_RENDERER_CAIRO_PANGOTEXT_H

#include <cairo.h>

#include "renderer/Page.h"
#include "renderer/TitleText.h"

namespace tolvex::render {

// Draws `title` onto `cr` as TitleText.h describes.
void DrawTitle(cairo_t* cr, const Title& title, const Rect& area);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_CAIRO_PANGOTEXT_H
