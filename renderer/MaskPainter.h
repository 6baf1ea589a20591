// Paints the DVD highlight mask of a page: black everywhere except an outline round each visible
// button, in one marking colour, without anti-aliasing, so that authoring tools (spumux with
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
// No outline is thinner than this: a one-pixel line lies in one field of an interlaced picture
// and flickers, and is easily lost by tools that round the button area to even rows.
inline constexpr int kMinMaskRing = 2;
// An outline outside its button is at most this thick (two lines of each field): enough to see
// from the sofa, without eating the space between buttons.
inline constexpr int kMaxMaskHalo = 4;

// The mask of `page` as rows of r, g, b bytes, page.width x page.height, stride width * 3.
//
// Each button with a part on the page (clipped to it) is marked by a closed outline. Each side
// of it lies just outside the button's rectangle, clear of the frame the menu picture draws
// along the inside, as thick as the frame but within kMinMaskRing..kMaxMaskHalo. A side without
// room there (at the page's edge, or where another button with its outline would come closer
// than one free pixel) lies instead on the frame, along the inside of the rectangle, as thick
// as the frame and at least kMinMaskRing, so the highlight replaces the frame on that side.
//
// Buttons whose rectangles touch or overlap (diagonals count) are first trimmed apart with the
// cut that loses the fewest pixels, leaving one free pixel between them. A button inside another
// is not trimmed; there, as a last resort everywhere, an outline pixel next to an earlier
// button's outline is left out, and of an outline cut into pieces that way only its largest
// piece is kept: every button stays one 8-connected area, and no two areas touch.
std::vector<uint8_t> PaintMask(const Page& page);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_MASKPAINTER_H
