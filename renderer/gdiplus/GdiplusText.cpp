// Titles with GDI+. GDI+ asked for a family that is not installed draws nothing, so the family
// is chosen here: the named one when installed, else kDefaultFontFamily, else the first
// installed of a few common sans-serif families. The text is drawn by DrawString, anti-aliased
// (GenericTypographic: no padding around the text); TitleInk draws it the same way into a
// scratch picture and measures what was painted. Pixel sizes are em heights, as pango's
// absolute sizes are; the layout box is the line's ascent plus descent high, as pango's.
#include "renderer/gdiplus/GdiplusText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Cp1252.h"

namespace tolvex::render {
namespace {

// Tried in this order when neither the named family nor kDefaultFontFamily is installed.
constexpr const wchar_t* kFallbackFamilies[] = {L"Liberation Sans", L"Arial", L"Segoe UI"};

// `text` as UTF-16: UTF-8 when it is valid UTF-8, else Windows-1252.
std::wstring Wide(const std::string& text) {
  if (text.empty()) return std::wstring();
  const int size = static_cast<int>(text.size());
  const int length =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
  std::wstring wide;
  if (length > 0) {
    wide.resize(static_cast<size_t>(length));
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(), length);
    return wide;
  }
  for (const char byte : text) {
    wide += static_cast<wchar_t>(platform::Cp1252ToUnicode(static_cast<unsigned char>(byte)));
  }
  return wide;
}

bool SameFamily(const std::wstring& a, const std::wstring& b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// The names of the installed font families.
std::vector<std::wstring> ReadInstalledFamilies() {
  std::vector<std::wstring> names;
  Gdiplus::InstalledFontCollection fonts;
  const INT count = fonts.GetFamilyCount();
  if (count <= 0) return names;
  std::vector<Gdiplus::FontFamily> families(static_cast<size_t>(count));
  INT found = 0;
  if (fonts.GetFamilies(count, families.data(), &found) != Gdiplus::Ok) return names;
  for (INT i = 0; i < found; ++i) {
    WCHAR name[LF_FACESIZE] = {0};
    if (families[static_cast<size_t>(i)].GetFamilyName(name) == Gdiplus::Ok) {
      names.emplace_back(name);
    }
  }
  return names;
}

// The installed families, read once per process (by the first caller, after GDI+ started):
// a font installed while the process runs is not seen.
const std::vector<std::wstring>& InstalledFamilies() {
  static const std::vector<std::wstring> names = ReadInstalledFamilies();
  return names;
}

// The installed family's own spelling of `name`, or empty.
std::wstring Installed(const std::wstring& name) {
  for (const std::wstring& family : InstalledFamilies()) {
    if (SameFamily(family, name)) return family;
  }
  return std::wstring();
}

// The family a title named `name` is drawn with; empty when none is installed.
std::wstring ChooseFamily(const std::string& name) {
  std::wstring named = Wide(name);
  const size_t first = named.find_first_not_of(L' ');
  named = first == std::wstring::npos ? std::wstring() : named.substr(first);
  while (!named.empty() && named.back() == L' ') named.pop_back();
  if (!named.empty()) {
    if (std::wstring family = Installed(named); !family.empty()) return family;
  }
  if (std::wstring family = Installed(Wide(kDefaultFontFamily)); !family.empty()) return family;
  for (const wchar_t* fallback : kFallbackFamilies) {
    if (std::wstring family = Installed(fallback); !family.empty()) return family;
  }
  return std::wstring();
}

// The style asked for, or the nearest the family has.
INT StyleOf(const Title& title, const Gdiplus::FontFamily& family) {
  const INT asked = (title.bold ? Gdiplus::FontStyleBold : 0) |
                    (title.italic ? Gdiplus::FontStyleItalic : 0);
  for (const INT style : {asked, asked & Gdiplus::FontStyleBold, asked & Gdiplus::FontStyleItalic,
                          INT{Gdiplus::FontStyleRegular}}) {
    if (family.IsStyleAvailable(style)) return style;
  }
  return asked;
}

// The underline's offset of its middle below the baseline and its thickness, in pixels, from
// the font's own metrics (through GDI, which reads them from the font file); a twelfth and a
// fifteenth of the em when the font has none.
void UnderlineOf(const Gdiplus::Font& font, float em, float* offset, float* thickness) {
  *offset = em / 12;
  *thickness = std::max(1.0f, em / 15);
  HDC dc = CreateCompatibleDC(nullptr);
  if (dc == nullptr) return;
  LOGFONTW description{};
  Gdiplus::Bitmap scratch(1, 1, PixelFormat32bppRGB);
  Gdiplus::Graphics graphics(&scratch);
  if (font.GetLogFontW(&graphics, &description) == Gdiplus::Ok) {
    // In units of a font of 1024 pixels per em, for precision.
    description.lfHeight = -1024;
    if (HFONT handle = CreateFontIndirectW(&description)) {
      HGDIOBJ previous = SelectObject(dc, handle);
      OUTLINETEXTMETRICW metrics{};
      metrics.otmSize = sizeof metrics;
      if (GetOutlineTextMetricsW(dc, sizeof metrics, &metrics) != 0 &&
          metrics.otmsUnderscoreSize > 0) {
        *offset = -static_cast<float>(metrics.otmsUnderscorePosition) * em / 1024;
        *thickness = std::max(1.0f, static_cast<float>(metrics.otmsUnderscoreSize) * em / 1024);
      }
      SelectObject(dc, previous);
      DeleteObject(handle);
    }
  }
  DeleteDC(dc);
}

// A title laid out: its font, text and the top-left corner of its layout box.
struct TitleLayout {
  std::unique_ptr<Gdiplus::FontFamily> family;
  std::unique_ptr<Gdiplus::Font> font;
  std::wstring text;
  Gdiplus::PointF origin;
  float width = 0;   // the layout box, in whole pixels
  float height = 0;
  float advance = 0;  // the text's own width
  bool underline = false;
  float underlineOffset = 0;  // from the layout box's top to the underline's middle
  float underlineThickness = 0;
};

// Lays `title` out as TitleText.h says, on `area`; false when there is nothing to draw.
bool LayOut(const Title& title, const Rect& area, TitleLayout* layout) {
  if (title.text.empty() || StartGdiplus() != Gdiplus::Ok) return false;
  const std::wstring familyName = ChooseFamily(title.fontName);
  if (familyName.empty()) return false;
  layout->family = std::make_unique<Gdiplus::FontFamily>(familyName.c_str());
  const Gdiplus::FontFamily& family = *layout->family;
  if (family.GetLastStatus() != Gdiplus::Ok) return false;
  const INT style = StyleOf(title, family);
  const auto em = static_cast<float>(title.sizePx);
  layout->font = std::make_unique<Gdiplus::Font>(&family, em, style, Gdiplus::UnitPixel);
  if (layout->font->GetLastStatus() != Gdiplus::Ok) return false;
  layout->text = Wide(title.text);

  // The layout box: the text's advance wide, ascent plus descent high, in whole pixels.
  const float unit = em / family.GetEmHeight(style);
  const float ascent = family.GetCellAscent(style) * unit;
  layout->height = std::ceil(ascent + family.GetCellDescent(style) * unit);
  Gdiplus::Bitmap scratch(1, 1, PixelFormat32bppRGB);
  Gdiplus::Graphics measure(&scratch);
  Gdiplus::RectF box;
  measure.MeasureString(layout->text.c_str(), static_cast<INT>(layout->text.size()),
                        layout->font.get(), Gdiplus::PointF(0, 0),
                        Gdiplus::StringFormat::GenericTypographic(), &box);
  layout->width = std::ceil(box.Width);
  layout->advance = box.Width;
  // Drawn by us: DrawString's underline is not drawn everywhere (Wine leaves it out).
  if (title.underline) {
    float offset = 0;
    UnderlineOf(*layout->font, em, &offset, &layout->underlineThickness);
    layout->underline = true;
    layout->underlineOffset = ascent + offset;
  }

  layout->origin = Gdiplus::PointF(static_cast<float>(title.x), static_cast<float>(title.y));
  if (!title.hasPosition) {
    layout->origin.X = static_cast<float>(area.left + (area.Width() - layout->width) / 2.0);
    layout->origin.Y = static_cast<float>(area.top + (area.Height() - layout->height) / 2.0);
  }
  return true;
}

// Draws a laid out title at `origin` with `brush`: grey anti-aliasing, no hinting to the
// pixel grid, as on Linux.
void Draw(Gdiplus::Graphics& graphics, const TitleLayout& layout, Gdiplus::PointF origin,
          const Gdiplus::Brush& brush) {
  const Gdiplus::TextRenderingHint before = graphics.GetTextRenderingHint();
  graphics.SetTextRenderingHint(Gdiplus::TextRenderingHintAntiAlias);
  graphics.DrawString(layout.text.c_str(), static_cast<INT>(layout.text.size()),
                      layout.font.get(), origin, Gdiplus::StringFormat::GenericTypographic(),
                      &brush);
  graphics.SetTextRenderingHint(before);
  if (layout.underline) {
    const float thickness = layout.underlineThickness;
    graphics.FillRectangle(&brush, Gdiplus::RectF(origin.X, origin.Y + layout.underlineOffset -
                                                                 thickness / 2,
                                                  layout.advance, thickness));
  }
}

}  // namespace

void DrawTitle(Gdiplus::Graphics& graphics, const Title& title, const Rect& area) {
  TitleLayout layout;
  if (!LayOut(title, area, &layout)) return;
  const Colour& c = title.colour;
  const Gdiplus::SolidBrush brush(Gdiplus::Color(255, c.r, c.g, c.b));
  Draw(graphics, layout, layout.origin, brush);
}

Rect TitleInk(const Title& title, const Rect& area) {
  TitleLayout layout;
  if (!LayOut(title, area, &layout)) return Rect{};
  // The title is drawn, as DrawTitle draws it, into a black scratch picture around its layout
  // box, wide enough for overhangs (italics, accents, the underline): the ink is what is not
  // black there. The picture is moved by whole pixels only, so every glyph lands on the same
  // fraction of a pixel as on the page.
  const int margin = title.sizePx;
  const int left = static_cast<int>(std::floor(layout.origin.X)) - margin;
  const int top = static_cast<int>(std::floor(layout.origin.Y)) - margin;
  const int width = static_cast<int>(layout.width) + 2 * margin + 2;
  const int height = static_cast<int>(layout.height) + 2 * margin + 2;
  Gdiplus::Bitmap scratch(width, height, PixelFormat32bppRGB);
  if (scratch.GetLastStatus() != Gdiplus::Ok) return Rect{};
  {
    Gdiplus::Graphics graphics(&scratch);
    graphics.Clear(Gdiplus::Color(255, 0, 0, 0));
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const Gdiplus::SolidBrush white(Gdiplus::Color(255, 255, 255, 255));
    Draw(graphics, layout,
         Gdiplus::PointF(layout.origin.X - static_cast<float>(left),
                         layout.origin.Y - static_cast<float>(top)),
         white);
  }
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * height);
  Gdiplus::BitmapData data{};
  data.Width = static_cast<UINT>(width);
  data.Height = static_cast<UINT>(height);
  data.Stride = width * 4;
  data.PixelFormat = PixelFormat32bppRGB;
  data.Scan0 = pixels.data();
  Gdiplus::Rect all(0, 0, width, height);
  if (scratch.LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                       PixelFormat32bppRGB, &data) != Gdiplus::Ok) {
    return Rect{};
  }
  scratch.UnlockBits(&data);
  Rect ink{width, height, 0, 0};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if ((pixels[static_cast<size_t>(y) * width + x] & 0xffffff) == 0) continue;
      ink = Rect{std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                 std::max(ink.bottom, y + 1)};
    }
  }
  if (ink.Empty()) return Rect{};
  return Rect{ink.left + left, ink.top + top, ink.right + left, ink.bottom + top};
}

std::string FontFamilyUsed(const Title& title) {
  if (StartGdiplus() != Gdiplus::Ok) return std::string();
  const std::wstring family = ChooseFamily(title.fontName);
  if (family.empty()) return std::string();
  const int size = static_cast<int>(family.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, family.data(), size, nullptr, 0, nullptr,
                                         nullptr);
  std::string name(static_cast<size_t>(std::max(length, 0)), '\0');
  WideCharToMultiByte(CP_UTF8, 0, family.data(), size, name.data(), length, nullptr, nullptr);
  return name;
}

}  // namespace tolvex::render
