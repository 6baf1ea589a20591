// A DVD player for the author tests, on libdvdnav (the navigation library common players use):
// plays a VIDEO_TS folder or a disc image until a menu holds still, presses buttons and arrow
// keys, and reports what a player would draw: the highlighted button and its area and colours,
// and the aspect of the picture; checks a menu's highlights against the mask it was made from.
#ifndef TOLVEX_TESTS_TOOLS_AUTHOR_DVDPLAYER_H
#define TOLVEX_TESTS_TOOLS_AUTHOR_DVDPLAYER_H

#include <dvdnav/dvdnav.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace tolvex::test {

struct Rgb8 {
  int r, g, b;
};

// What a player draws over a button of the still menu in one state: the area (edges included)
// and, for each of the four kinds of subpicture pixel, its colour (from the menu's palette) and
// its contrast (0 transparent .. 15 opaque).
struct DrawnHighlight {
  int left = 0, top = 0, right = 0, bottom = 0;
  std::array<Rgb8, 4> colour{};
  std::array<int, 4> contrast{};
};

// Where the player stopped: a menu page waiting for a key.
struct Menu {
  int buttons = 0;    // the number of buttons of the menu (0: no menu came)
  int highlight = 0;  // the highlighted button, from 1
};

class DvdPlayer {
 public:
  explicit DvdPlayer(const std::string& disc);
  ~DvdPlayer();
  DvdPlayer(const DvdPlayer&) = delete;
  DvdPlayer& operator=(const DvdPlayer&) = delete;

  bool ok() const { return m_nav != nullptr; }

  // Plays on until a menu holds still, noting every title played on the way (and, through
  // `onTitle`, each title as it starts). A failure of the disc fails the test and gives {}.
  Menu RunToMenu(const std::function<void(int title)>& onTitle = nullptr);

  pci_t* Pci();
  void Select(int button);
  void Activate();
  int Highlight();
  dvdnav_t* nav() { return m_nav; }
  // The titles played since the last call.
  std::set<int> TakeTitles() { return std::move(m_titles); }
  double TitleSeconds(int title);
  // The highlight of `button` of the current menu when selected (`activated` false) or
  // activated; none when the menu has no such button.
  std::optional<DrawnHighlight> Highlight(int button, bool activated);
  // The aspect the disc states for the picture playing now: 0 for 4:3, 3 for 16:9.
  int VideoAspect() { return dvdnav_get_video_aspect(m_nav); }

 private:
  dvdnav_t* m_nav = nullptr;
  std::set<int> m_titles;
  std::array<uint32_t, 16> m_palette{};  // the subpicture palette, as 0x00YYCrCb
};

// Checks the menu `player` stands at, as a viewer sees it: every button has a selected and an
// activated highlight drawn in `selected` and `activated` (within the palette's rounding), and
// each selected area holds exactly one of the bands (the 8-connected pieces) of `maskFile`,
// each band lying in exactly one area.
void ExpectHighlights(DvdPlayer& player, const std::string& maskFile, Rgb8 selected,
                      Rgb8 activated);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_TOOLS_AUTHOR_DVDPLAYER_H
