// Paints the menu picture of a page onto a Canvas: the order of the layers, the frame rings,
// the arrows and where titles go. The drawing itself is the canvas back end's.
#include "renderer/MenuPainter.h"

#include <algorithm>
#include <cmath>

#include "renderer/Picture.h"

namespace tolvex::render {
namespace {

// The arrow of a previous or next button that has no picture, inside the ring: one solid
// shape, a head as tall as the space allows on a shaft 0.44 of that, pointing left for the
// previous button and right for the next. It is filled in the frame colour, the colour the
// page's designer chose to stand out from the background around the button, so the arrow reads
// wherever its frame does. Its horizontal edges lie on whole pixels and it has no thin strokes,
// which would flicker on an interlaced television.
void PaintArrow(Canvas& canvas, const Button& button, const Rect& inner) {
  const int64_t side = std::min(inner.Width(), inner.Height());
  const Rect area = inner.Inset(static_cast<int>(std::max<int64_t>(2, side / 8)));
  if (area.Empty()) return;
  const double height = std::min<double>(area.Height(), area.Width() * 1.25);
  const double length = std::min<double>(area.Width(), 2.5 * height);
  const double head = std::min(length, 0.8 * height);
  const double centreX = (area.left + area.right) / 2.0;
  const double centreY = (area.top + area.bottom) / 2.0;
  const double dir = button.role == ButtonRole::kPrevious ? -1 : 1;
  const double tip = centreX + dir * length / 2;
  const double tail = centreX - dir * length / 2;
  const double base = tip - dir * head;
  auto y = [&](double offset) { return std::round(centreY + offset); };
  const double shaft = 0.22 * height;  // half the shaft's thickness

  canvas.FillPolygon({{tail, y(-shaft)},
                      {base, y(-shaft)},
                      {base, y(-height / 2)},
                      {tip, centreY},
                      {base, y(height / 2)},
                      {base, y(shaft)},
                      {tail, y(shaft)}},
                     button.frameColour);
}

Status PaintButton(Canvas& canvas, const Button& button, const Rect& page) {
  // Only the part on the page is drawn, frame and picture fitted to it, just as the mask
  // marks it; this also keeps every size below in range whatever the template's edges.
  const Rect rect = button.rect.Intersect(page);
  if (rect.Empty()) return Status::kOk;  // wholly off the page: not on the menu nor the mask
  const int ring = RingWidth(rect, button.frameThickness);
  const Rect inner = rect.Inset(ring);

  if (!button.picture.empty() && !inner.Empty()) {
    if (const Status s = canvas.DrawPicture(button.picture, inner); s != Status::kOk) return s;
  } else if (button.picture.empty() && button.role != ButtonRole::kNumbered) {
    PaintArrow(canvas, button, inner);
  }
  if (ring > 0) {
    if (!button.framePicture.empty()) {
      // Stretched to the whole part, so that the picture's border lands on the ring.
      if (const Status s = canvas.DrawPicture(button.framePicture, rect, &inner);
          s != Status::kOk) {
        return s;
      }
    } else {
      canvas.FillRing(rect, inner, button.frameColour);
    }
  } else if (!button.framePicture.empty()) {
    // No ring to show it in, but a named picture that is missing is still an error.
    if (const Status s = CheckPictureDecodes(button.framePicture); s != Status::kOk) return s;
  }
  canvas.DrawTitle(button.title, rect);
  return Status::kOk;
}

}  // namespace

Status PaintMenu(const Page& page, std::unique_ptr<Canvas>* out) {
  std::unique_ptr<Canvas> canvas;
  if (const Status s = Canvas::Create(page.width, page.height, &canvas); s != Status::kOk) {
    return s;
  }
  if (!page.background.empty()) {
    if (const Status s = canvas->DrawPicture(page.background, page.Canvas()); s != Status::kOk) {
      return s;
    }
  }
  canvas->DrawTitle(page.title, page.Canvas());
  for (const Button& button : page.buttons) {
    if (const Status s = PaintButton(*canvas, button, page.Canvas()); s != Status::kOk) return s;
  }
  if (const Status s = canvas->Finish(); s != Status::kOk) return s;
  *out = std::move(canvas);
  return Status::kOk;
}

}  // namespace tolvex::render
