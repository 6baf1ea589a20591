// The titles of a page as the renderer will draw them, built from what the tool reads: the
// page title and each button's title in the renderer's own model, so that check can measure
// them with the renderer's text layout (renderer/TitleText.h) before anything is drawn.
#ifndef TOLVEX_TOOLS_PAGETITLES_H
#define TOLVEX_TOOLS_PAGETITLES_H

#include "renderer/Page.h"
#include "tools/page/PageReader.h"

#include <optional>
#include <string>
#include <vector>

namespace menutool {

// The title described by `readings` (the page's, or a button's: found by their short names
// "title", "title.position", "title.font.*"), with `text` as the renderer reads it (whole, not
// cut to the library's 79 characters). Missing values take the renderer's defaults.
tolvex::render::Title TitleOf(const std::vector<Reading>& readings, const std::string& text);

// The pixels the title covers when drawn for `area` (the button, or the whole canvas).
tolvex::render::Rect TitleBox(const tolvex::render::Title& title,
                              const tolvex::render::Rect& area);

// The family drawn instead of the title's font when that font is not installed, or nullopt
// when the font is there (or none is named).
std::optional<std::string> FontStandIn(const tolvex::render::Title& title);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PAGETITLES_H
