// Paints the DVD highlight mask of a page: black everywhere except each visible button's frame
// ring, in one marking colour, without anti-aliasing, so that authoring tools (spumux with
// autooutline) find exactly one area per button. Keeps buttons apart where they would touch.
// Pure memory work; reentrant.
#ifndef TOLVEX_RENDERER_MASKPAINTER_H
#define TOLVEX_RENDERER_MASKPAINTER_H

#include <cstdint>
#include <vector>

#include "renderer/Page.h"

namespace tolvex::render {

// The colour of every marked pixel; everything else is exactly black.
inline constexpr Colour kMaskColour{255, 255, 255};
// Rings thinner than this are drawn this thick: a one-pixel outline is easily lost by tools
// that round the button area to even rows.
inline constexpr int kMinMaskRing = 2;

// The mask of `page` as rows of r, g, b bytes, page.width x page.height, stride width * 3.
//
// Each button with a part on the page is marked by a ring along the inside of its rectangle
// (clipped to the page), max(frame thickness, kMinMaskRing) pixels wide. Buttons whose
// rectangles touch or overlap (diagonals count) are first trimmed apart with the cut that
// loses the fewest pixels, leaving one free pixel between them. A button inside another is
// not trimmed; there, as a last resort everywhere, a ring pixel next to an earlier button's
// ring is left out, and of a ring cut into pieces that way only its largest piece is kept:
// every button stays one 8-connected area, and no two areas touch.
std::vector<uint8_t> PaintMask(const Page& page);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_MASKPAINTER_H
