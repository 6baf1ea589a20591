// The canvas on GDI+: a 32-bit RGB bitmap in memory (no window, no display). Rectangles, rings
// and polygons are drawn without anti-aliasing so that their edges are exact to the pixel, as
// the mask beside the menu is; titles are filled anti-aliased (GdiplusText). Pixel centres
// lie at half coordinates, as cairo's do, so a shape covers the same pixels on both systems.
#include <cstdint>
#include <string>
#include <vector>

#include "renderer/Canvas.h"
#include "renderer/Failure.h"
#include "renderer/gdiplus/GdiplusPicture.h"
#include "renderer/gdiplus/GdiplusText.h"

namespace tolvex::render {

struct Canvas::Surface {
  BitmapPtr bitmap;
  std::unique_ptr<Gdiplus::Graphics> graphics;
  Gdiplus::Status failed = Gdiplus::Ok;  // the first drawing call that failed
  std::vector<uint8_t> pixels;           // after Finish: 0xXXRRGGBB words, row after row

  void Check(Gdiplus::Status status) {
    if (failed == Gdiplus::Ok) failed = status;
  }
};

namespace {

Gdiplus::Rect ToGdiplus(const Rect& r) {
  return Gdiplus::Rect(r.left, r.top, static_cast<INT>(r.Width()), static_cast<INT>(r.Height()));
}

// The ring between `outer` and `inner` (all of `outer` when `inner` is empty), on whole pixels.
std::unique_ptr<Gdiplus::Region> Ring(const Rect& outer, const Rect& inner) {
  auto ring = std::make_unique<Gdiplus::Region>(ToGdiplus(outer));
  if (!inner.Empty()) ring->Exclude(ToGdiplus(inner));
  return ring;
}

}  // namespace

Canvas::Canvas(std::unique_ptr<Surface> surface) : m_surface(std::move(surface)) {}
Canvas::~Canvas() = default;

Status Canvas::Create(int width, int height, std::unique_ptr<Canvas>* out) {
  if (const Gdiplus::Status started = StartGdiplus(); started != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed, "cannot start " + GdiplusStatusText(started));
  }
  auto surface = std::make_unique<Surface>();
  surface->bitmap.reset(new Gdiplus::Bitmap(width, height, PixelFormat32bppRGB));
  if (surface->bitmap->GetLastStatus() != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed, "out of memory for the menu canvas");
  }
  surface->graphics.reset(new Gdiplus::Graphics(surface->bitmap.get()));
  Gdiplus::Graphics& graphics = *surface->graphics;
  surface->Check(graphics.GetLastStatus());
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeNone);
  graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  surface->Check(graphics.Clear(Gdiplus::Color(255, 0, 0, 0)));
  out->reset(new Canvas(std::move(surface)));
  return Status::kOk;
}

void Canvas::FillRing(const Rect& outer, const Rect& inner, Colour colour) {
  Gdiplus::SolidBrush brush(Gdiplus::Color(255, colour.r, colour.g, colour.b));
  m_surface->Check(m_surface->graphics->FillRegion(&brush, Ring(outer, inner).get()));
}

Status Canvas::DrawPicture(const std::string& path, const Rect& target, const Rect* ringInner) {
  BitmapPtr picture;
  if (const Status s = LoadPictureAt(path, static_cast<int>(target.Width()),
                                     static_cast<int>(target.Height()), &picture);
      s != Status::kOk) {
    return s;
  }
  Gdiplus::Graphics& graphics = *m_surface->graphics;
  if (ringInner != nullptr) {
    graphics.SetClip(Ring(target, *ringInner).get());
  }
  // Already at its size: copied pixel for pixel, blended by its alpha over what is there.
  graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
  m_surface->Check(graphics.DrawImage(picture.get(), ToGdiplus(target), 0, 0,
                                      static_cast<INT>(target.Width()),
                                      static_cast<INT>(target.Height()), Gdiplus::UnitPixel));
  if (ringInner != nullptr) graphics.ResetClip();
  return Status::kOk;
}

void Canvas::FillPolygon(const std::vector<Point>& points, Colour colour) {
  if (points.empty()) return;
  std::vector<Gdiplus::PointF> corners;
  for (const Point& p : points) {
    corners.emplace_back(static_cast<Gdiplus::REAL>(p.x), static_cast<Gdiplus::REAL>(p.y));
  }
  Gdiplus::SolidBrush brush(Gdiplus::Color(255, colour.r, colour.g, colour.b));
  m_surface->Check(m_surface->graphics->FillPolygon(
      &brush, corners.data(), static_cast<INT>(corners.size()), Gdiplus::FillModeWinding));
}

void Canvas::DrawTitle(const Title& title, const Rect& area) {
  render::DrawTitle(*m_surface->graphics, title, area);
}

Status Canvas::Finish() {
  Surface& surface = *m_surface;
  surface.graphics.reset();
  if (surface.failed != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed, "drawing failed: " + GdiplusStatusText(surface.failed));
  }
  const int width = static_cast<int>(surface.bitmap->GetWidth());
  const int height = static_cast<int>(surface.bitmap->GetHeight());
  surface.pixels.assign(static_cast<size_t>(width) * height * 4, 0);
  Gdiplus::BitmapData data{};
  data.Width = static_cast<UINT>(width);
  data.Height = static_cast<UINT>(height);
  data.Stride = width * 4;
  data.PixelFormat = PixelFormat32bppRGB;
  data.Scan0 = surface.pixels.data();
  Gdiplus::Rect all(0, 0, width, height);
  const Gdiplus::Status locked = surface.bitmap->LockBits(
      &all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf, PixelFormat32bppRGB,
      &data);
  if (locked != Gdiplus::Ok) {
    return Fail(Status::kDrawingFailed,
                "cannot read the menu canvas: " + GdiplusStatusText(locked));
  }
  surface.bitmap->UnlockBits(&data);
  return Status::kOk;
}

PixelRows Canvas::Rows() const {
  const Surface& surface = *m_surface;
  const int width = static_cast<int>(surface.bitmap->GetWidth());
  return PixelRows{width, static_cast<int>(surface.bitmap->GetHeight()), surface.pixels.data(),
                   static_cast<ptrdiff_t>(width) * 4, PixelLayout::kCairo};
}

}  // namespace tolvex::render
