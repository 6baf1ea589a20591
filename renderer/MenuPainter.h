// Paints the menu picture of a page: background, page title, and for each button its picture,
// frame and title, on a Canvas of the system's drawing back end. Leaves encoding and writing to
// others. Reentrant: everything lives in the call.
#ifndef TOLVEX_RENDERER_MENUPAINTER_H
#define TOLVEX_RENDERER_MENUPAINTER_H

#include <memory>

#include "renderer/Canvas.h"
#include "renderer/Page.h"
#include "renderer/Status.h"

namespace tolvex::render {

// Paints `page` onto a new opaque canvas of the page's size:
//   1. the background picture stretched to the canvas, or black;
//   2. the page title;
//   3. each button in order, cut to its part on the page: the frame is a ring along the
//      inside of that part, its thickness wide, painted with the frame picture (stretched to
//      the whole part, so that its border lands on the ring) when one is named, else in the
//      frame colour; the button picture is stretched into the space inside the ring, and a
//      previous or next button without a picture gets instead a solid arrow in its frame
//      colour there, pointing left or right; then the button's title, centred on that part
//      when it has no position.
// Any named picture that cannot be loaded fails the whole page.
Status PaintMenu(const Page& page, std::unique_ptr<Canvas>* canvas);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_MENUPAINTER_H
