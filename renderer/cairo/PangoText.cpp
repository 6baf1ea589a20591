// Drawing and measuring a title with fontconfig, pango and cairo.
#include "renderer/cairo/PangoText.h"

#include <pango/pangocairo.h>

#include <cmath>
#include <memory>
#include <string>

namespace tolvex::render {
namespace {

struct GObjectUnref {
  void operator()(gpointer p) const { g_object_unref(p); }
};
struct FontDescriptionFree {
  void operator()(PangoFontDescription* d) const { pango_font_description_free(d); }
};
struct AttrListUnref {
  void operator()(PangoAttrList* a) const { pango_attr_list_unref(a); }
};
struct FontOptionsDestroy {
  void operator()(cairo_font_options_t* o) const { cairo_font_options_destroy(o); }
};

std::string AsUtf8(const std::string& text) {
  if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr)) return text;
  gchar* converted = g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-8",
                               "WINDOWS-1252", nullptr, nullptr, nullptr);
  if (converted == nullptr) {
    converted = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  }
  std::string result(converted);
  g_free(converted);
  return result;
}

// "Name, DejaVu Sans, sans-serif": pango asks fontconfig for the first family it has, so a
// name that is not installed lands on our default rather than on an arbitrary font. A comma
// inside the name would split it into several families, so it goes.
std::string FamilyList(const std::string& name) {
  std::string family;
  for (const char c : name) family += c == ',' ? ' ' : c;
  if (family.find_first_not_of(' ') == std::string::npos) family.clear();
  if (!family.empty()) family += ",";
  return family + kDefaultFontFamily + ",sans-serif";
}

struct CairoDestroy {
  void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};
struct SurfaceDestroy {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using SurfaceHandle = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;
using LayoutPtr = std::unique_ptr<PangoLayout, GObjectUnref>;

PangoFontDescription* FontOf(const Title& title) {
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family(font, FamilyList(title.fontName).c_str());
  pango_font_description_set_absolute_size(font, title.sizePx * PANGO_SCALE);
  pango_font_description_set_style(font, title.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  pango_font_description_set_weight(font, title.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  return font;
}

// The title's text laid out on `cr` as it is drawn: font, size, style and the text itself.
LayoutPtr MakeLayout(cairo_t* cr, const Title& title) {
  LayoutPtr layout(pango_cairo_create_layout(cr));

  // Grey anti-aliasing and no hinting: the same shapes at any position, smooth edges on TV.
  std::unique_ptr<cairo_font_options_t, FontOptionsDestroy> options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  PangoContext* context = pango_layout_get_context(layout.get());
  pango_cairo_context_set_font_options(context, options.get());
  pango_layout_context_changed(layout.get());

  std::unique_ptr<PangoFontDescription, FontDescriptionFree> font(FontOf(title));
  pango_layout_set_font_description(layout.get(), font.get());
  if (title.underline) {
    std::unique_ptr<PangoAttrList, AttrListUnref> attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    pango_layout_set_attributes(layout.get(), attributes.get());
  }
  const std::string text = AsUtf8(title.text);
  pango_layout_set_text(layout.get(), text.c_str(), static_cast<int>(text.size()));
  return layout;
}

// Where the layout's top-left corner goes: the title's position, or centred on `area`.
void Origin(PangoLayout* layout, const Title& title, const Rect& area, double* x, double* y) {
  *x = title.x;
  *y = title.y;
  if (!title.hasPosition) {
    PangoRectangle logical;
    pango_layout_get_pixel_extents(layout, nullptr, &logical);
    *x = area.left + (area.Width() - logical.width) / 2.0 - logical.x;
    *y = area.top + (area.Height() - logical.height) / 2.0 - logical.y;
  }
}

}  // namespace

void DrawTitle(cairo_t* cr, const Title& title, const Rect& area) {
  if (title.text.empty()) return;
  LayoutPtr layout = MakeLayout(cr, title);
  double x = 0;
  double y = 0;
  Origin(layout.get(), title, area, &x, &y);
  cairo_save(cr);
  cairo_set_source_rgb(cr, title.colour.r / 255.0, title.colour.g / 255.0, title.colour.b / 255.0);
  cairo_move_to(cr, x, y);
  pango_cairo_show_layout(cr, layout.get());
  cairo_restore(cr);
}

Rect TitleInk(const Title& title, const Rect& area) {
  if (title.text.empty()) return Rect{};
  // A context of its own: the layout depends on the font options, not on the target's size.
  SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1));
  std::unique_ptr<cairo_t, CairoDestroy> cr(cairo_create(surface.get()));
  LayoutPtr layout = MakeLayout(cr.get(), title);
  double x = 0;
  double y = 0;
  Origin(layout.get(), title, area, &x, &y);
  PangoRectangle ink;
  pango_layout_get_pixel_extents(layout.get(), &ink, nullptr);
  // The pixels that anti-aliasing touches: from the floor of the start to the ceiling of the end.
  const int left = static_cast<int>(std::floor(x + ink.x));
  const int top = static_cast<int>(std::floor(y + ink.y));
  return Rect{left, top, static_cast<int>(std::ceil(x + ink.x + ink.width)),
              static_cast<int>(std::ceil(y + ink.y + ink.height))};
}

std::string FontFamilyUsed(const Title& title) {
  SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1));
  std::unique_ptr<cairo_t, CairoDestroy> cr(cairo_create(surface.get()));
  std::unique_ptr<PangoContext, GObjectUnref> context(pango_cairo_create_context(cr.get()));
  std::unique_ptr<PangoFontDescription, FontDescriptionFree> font(FontOf(title));
  std::unique_ptr<PangoFont, GObjectUnref> loaded(pango_context_load_font(context.get(), font.get()));
  if (!loaded) return std::string();
  std::unique_ptr<PangoFontDescription, FontDescriptionFree> used(
      pango_font_describe(loaded.get()));
  const char* family = pango_font_description_get_family(used.get());
  return family ? family : "";
}

}  // namespace tolvex::render
