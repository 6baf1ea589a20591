// The libdvdnav player of the author tests (see DvdPlayer.h).
#include "tools/author/DvdPlayer.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <vector>

#include "support/MarkedAreas.h"

namespace tolvex::test {

DvdPlayer::DvdPlayer(const std::string& disc) {
  if (dvdnav_open(&m_nav, disc.c_str()) != DVDNAV_STATUS_OK) m_nav = nullptr;
}

DvdPlayer::~DvdPlayer() {
  if (m_nav) dvdnav_close(m_nav);
}

Menu DvdPlayer::RunToMenu(const std::function<void(int title)>& onTitle) {
  uint8_t block[DVD_VIDEO_LB_LEN];
  int lastTitle = 0;
  for (int blocks = 0; blocks < 400000; ++blocks) {
    int event = 0, length = 0;
    if (dvdnav_get_next_block(m_nav, block, &event, &length) != DVDNAV_STATUS_OK) {
      ADD_FAILURE() << dvdnav_err_to_string(m_nav);
      return {};
    }
    if (dvdnav_is_domain_vts(m_nav)) {
      int32_t title = 0, part = 0;
      if (dvdnav_current_title_info(m_nav, &title, &part) == DVDNAV_STATUS_OK && title > 0) {
        m_titles.insert(title);
        if (title != lastTitle && onTitle) onTitle(title);
        lastTitle = title;
      }
    } else {
      lastTitle = 0;
    }
    switch (event) {
      case DVDNAV_SPU_CLUT_CHANGE:
        std::memcpy(m_palette.data(), block, sizeof(uint32_t) * m_palette.size());
        break;
      case DVDNAV_STILL_FRAME:
        if (!dvdnav_is_domain_vts(m_nav) && Pci() && Pci()->hli.hl_gi.btn_ns > 0) {
          Menu menu;
          menu.buttons = Pci()->hli.hl_gi.btn_ns;
          menu.highlight = Highlight();
          return menu;
        }
        dvdnav_still_skip(m_nav);
        break;
      case DVDNAV_WAIT:
        dvdnav_wait_skip(m_nav);
        break;
      case DVDNAV_STOP:
        ADD_FAILURE() << "the disc stopped";
        return {};
    }
  }
  ADD_FAILURE() << "no menu came";
  return {};
}

pci_t* DvdPlayer::Pci() { return dvdnav_get_current_nav_pci(m_nav); }

void DvdPlayer::Select(int button) {
  ASSERT_EQ(dvdnav_button_select(m_nav, Pci(), button), DVDNAV_STATUS_OK);
}

void DvdPlayer::Activate() { ASSERT_EQ(dvdnav_button_activate(m_nav, Pci()), DVDNAV_STATUS_OK); }

int DvdPlayer::Highlight() {
  int32_t button = 0;
  dvdnav_get_current_highlight(m_nav, &button);
  return button;
}

double DvdPlayer::TitleSeconds(int title) {
  uint64_t* times = nullptr;
  uint64_t duration = 0;
  dvdnav_describe_title_chapters(m_nav, title, &times, &duration);
  std::free(times);
  return duration / 90000.0;
}

namespace {

// A palette entry (Y, Cr, Cb as ITU-R BT.601 studio levels) as RGB.
Rgb8 ToRgb(uint32_t ycrcb) {
  const double y = (ycrcb >> 16 & 0xff) - 16.0, cr = (ycrcb >> 8 & 0xff) - 128.0,
               cb = (ycrcb & 0xff) - 128.0;
  auto clamp = [](double v) { return static_cast<int>(std::clamp(v + 0.5, 0.0, 255.0)); };
  return {clamp(1.164 * y + 1.596 * cr), clamp(1.164 * y - 0.813 * cr - 0.392 * cb),
          clamp(1.164 * y + 2.017 * cb)};
}

}  // namespace

std::optional<DrawnHighlight> DvdPlayer::Highlight(int button, bool activated) {
  dvdnav_highlight_area_t area{};
  if (!Pci() || dvdnav_get_highlight_area(Pci(), button, activated ? 1 : 0, &area) !=
                    DVDNAV_STATUS_OK)
    return std::nullopt;
  DrawnHighlight drawn{static_cast<int>(area.sx), static_cast<int>(area.sy),
                       static_cast<int>(area.ex), static_cast<int>(area.ey), {}, {}};
  // The upper 16 bits hold four palette indexes, the lower 16 four contrasts, pixel kinds
  // 3 (emphasis 2), 2 (emphasis 1), 1 (pattern), 0 (background) from the top nibble down.
  for (int kind = 0; kind < 4; ++kind) {
    drawn.colour[kind] = ToRgb(m_palette[area.palette >> (16 + 4 * kind) & 0xf]);
    drawn.contrast[kind] = static_cast<int>(area.palette >> (4 * kind) & 0xf);
  }
  return drawn;
}

namespace {

// The 8-connected pieces of marked (non-black) pixels of a mask picture.
std::vector<MarkedArea> MaskPieces(const std::string& file) {
  std::unique_ptr<GdkPixbuf, void (*)(void*)> mask(gdk_pixbuf_new_from_file(file.c_str(), nullptr),
                                                  g_object_unref);
  if (!mask) {
    ADD_FAILURE() << file << ": unreadable";
    return {};
  }
  const int n = gdk_pixbuf_get_n_channels(mask.get());
  const int stride = gdk_pixbuf_get_rowstride(mask.get());
  const guchar* pixels = gdk_pixbuf_read_pixels(mask.get());
  return MarkedAreas(gdk_pixbuf_get_width(mask.get()), gdk_pixbuf_get_height(mask.get()),
                     [&](int x, int y) {
                       const guchar* p = pixels + y * stride + x * n;
                       return (p[0] | p[1] | p[2]) != 0;
                     });
}

std::string Describe(const DrawnHighlight& h) {
  std::ostringstream text;
  text << "area " << h.left << "," << h.top << " - " << h.right << "," << h.bottom << ", kinds:";
  for (int k = 0; k < 4; ++k) {
    text << " (" << h.colour[k].r << " " << h.colour[k].g << " " << h.colour[k].b
         << " contrast " << h.contrast[k] << ")";
  }
  return text.str();
}

// Some pixels of the button's subpicture show, and all that show are in `colour`.
void ExpectDrawnIn(const DrawnHighlight& h, Rgb8 colour, const std::string& where) {
  int shown = 0;
  for (int k = 0; k < 4; ++k) {
    if (h.contrast[k] == 0) continue;
    ++shown;
    const Rgb8& c = h.colour[k];
    EXPECT_TRUE(std::abs(c.r - colour.r) <= 12 && std::abs(c.g - colour.g) <= 12 &&
                std::abs(c.b - colour.b) <= 12)
        << where << ": " << Describe(h);
  }
  EXPECT_GT(shown, 0) << where << ": nothing is drawn: " << Describe(h);
}

}  // namespace

void ExpectHighlights(DvdPlayer& player, const std::string& maskFile, Rgb8 selected,
                      Rgb8 activated) {
  const int buttons = player.Pci() ? player.Pci()->hli.hl_gi.btn_ns : 0;
  const std::vector<MarkedArea> bands = MaskPieces(maskFile);
  ASSERT_EQ(static_cast<int>(bands.size()), buttons) << maskFile;
  std::vector<int> held(bands.size(), 0);
  for (int b = 1; b <= buttons; ++b) {
    const std::string where = maskFile + " button " + std::to_string(b);
    const auto drawn = player.Highlight(b, false), pressed = player.Highlight(b, true);
    ASSERT_TRUE(drawn && pressed) << where;
    ExpectDrawnIn(*drawn, selected, where + " selected");
    ExpectDrawnIn(*pressed, activated, where + " activated");
    int bandsHeld = 0;
    for (size_t i = 0; i < bands.size(); ++i) {
      const MarkedArea& band = bands[i];  // the drawn area's edges are its own
      if (drawn->left <= band.left && drawn->top <= band.top && drawn->right >= band.right - 1 &&
          drawn->bottom >= band.bottom - 1) {
        ++held[i], ++bandsHeld;
      }
    }
    EXPECT_EQ(bandsHeld, 1) << where << ": " << Describe(*drawn);
  }
  for (size_t i = 0; i < bands.size(); ++i) {
    EXPECT_EQ(held[i], 1) << maskFile << ": band at " << bands[i].left << "," << bands[i].top
                          << " lies in " << held[i] << " button areas";
  }
}

}  // namespace tolvex::test
