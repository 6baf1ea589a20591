// The check command: reads the whole page (in an edit) and reports, one line each, what
// will go wrong when the page is rendered or shown on a television: counts and layouts that do
// not agree; buttons off the canvas, on top of each other, outside the title-safe area or on
// odd lines; frames too thin for interlaced pictures or so thick they squash the picture;
// titles cut off or running over a neighbour (measured with the renderer's own text layout);
// fonts that are not installed; colours beyond 255; a layout sized for the other standard;
// pictures and outputs that cannot be used; values that read as missing because they hold
// "default", and texts that the library's 80- or 1000-byte read buffers will cut; outputs that
// lie outside the template's folder. A template is untrusted input: one larger than the
// renderer reads is refused unread, overlaps are searched for through a grid of the canvas
// rather than pair by pair, and findings of one kind are listed a few times and then counted,
// so time, memory and the report grow no faster than the page.
// Exit 0 when clean, 1 with warnings, 2 with errors (render refuses the page then).
#include "tools/check/BoxGrid.h"
#include "tools/layout/Canvas.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Echo.h"
#include "tools/page/PageReader.h"
#include "tools/check/PageTitles.h"
#include "tools/check/PictureCheck.h"
#include "tools/page/RawProfile.h"
#include "tools/page/Rescale.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"

#include "renderer/InputFile.h"
#include "renderer/Page.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

namespace menutool {
namespace {

enum class Severity { kWarning, kError };

// How many findings of one kind are listed; the others are counted in one line at the end.
constexpr int kListed = 20;

class Report {
 public:
  Report(const std::string& file, std::ostream& out) : m_file(file), m_out(out) {}
  void Add(Severity severity, const std::string& where, const std::string& what) {
    (severity == Severity::kError ? m_errors : m_warnings)++;
    const std::string finding = (where.empty() ? "" : where + ": ") + what;
    auto [kind, added] = m_kinds.try_emplace(KindOf(severity, finding), 0);
    if (added) m_order.push_back(kind);
    if (++kind->second <= kListed) m_out << m_file << ": " << Name(severity) << ": " << finding << "\n";
  }
  // The counts of the findings that were not listed.
  void Finish() {
    for (const auto& kind : m_order)
      if (kind->second > kListed)
        m_out << m_file << ": " << Name(kind->first.first) << ": " << kind->second - kListed
              << " more like \"" << kind->first.second << "\", not listed\n";
  }
  int Status() const { return m_errors ? kExitError : m_warnings ? kExitMissing : kExitOk; }
  int errors() const { return m_errors; }

 private:
  using Kinds = std::map<std::pair<Severity, std::string>, int>;
  static const char* Name(Severity severity) {
    return severity == Severity::kError ? "error" : "warning";
  }
  // A finding with its numbers and quoted names taken out: what findings of a kind share.
  static Kinds::key_type KindOf(Severity severity, const std::string& finding) {
    std::string kind;
    bool quoted = false;
    for (char c : finding) {
      if (c == '\'') {
        if (!quoted) kind += "'...'";
        quoted = !quoted;
      } else if (quoted) {
        continue;
      } else if (std::isdigit(static_cast<unsigned char>(c))) {
        if (kind.empty() || kind.back() != '#') kind += '#';
      } else {
        kind += c;
      }
    }
    return {severity, kind};
  }

  std::string m_file;
  std::ostream& m_out;
  int m_errors = 0;
  int m_warnings = 0;
  Kinds m_kinds;
  std::vector<Kinds::iterator> m_order;  // the kinds in the order first found
};

std::string RectText(const tagRECT& r) {
  std::ostringstream out;
  out << r.left << " " << r.top << " " << r.right << " " << r.bottom;
  return out.str();
}

tagRECT RectOf(const Reading& reading) {
  const Values& v = reading.values;
  return {static_cast<int32_t>(v[0].number), static_cast<int32_t>(v[1].number),
          static_cast<int32_t>(v[2].number), static_cast<int32_t>(v[3].number)};
}

struct Placed {
  std::string name;  // "button 2", "the next button"
  tagRECT rect;
};

namespace render = tolvex::render;

render::Rect ToRender(const tagRECT& r) {
  return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
          std::max(r.top, r.bottom)};
}
bool Inside(const render::Rect& inner, const tagRECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

// A title of a layout with where it is drawn, for finding titles that run over a neighbour.
struct PlacedTitle {
  std::string owner;  // "button 2"
  render::Rect box;
};

class Checker {
 public:
  // `edited` is the name under which the session reaches the template's edit.
  Checker(const TemplatePath& file, const std::string& edited, const PageReading& page,
          bool layoutInUseOnly, Report* report)
      : m_file(file), m_edited(edited), m_page(page), m_layoutInUseOnly(layoutInUseOnly),
        m_report(*report) {}

  void Run() {
    CheckCounts();
    const Reading* mode = m_page.FindPage("mode");
    if (!mode) m_report.Add(Severity::kWarning, "mode", "no value; taking the NTSC canvas 720x480");
    m_canvas = Canvas::For(!mode || mode->values[0].number != 0);

    CheckStored(m_page.page, 0, 0, "");
    CheckFiles(m_page.page, "");
    CheckOutputs();
    CheckColours(m_page.page, "");
    CheckTitle(TitleOf(m_page.page, FullText("title", 0, 0)),
               {0, 0, m_canvas.width, m_canvas.height}, "title");
    std::vector<Placed> navs = NavButtons();
    for (const LayoutReading& layout : m_page.layouts)
      if (layout.current || !m_layoutInUseOnly) CheckLayout(layout, navs);
    if (std::optional<std::string> why = SizedForOtherStandard(m_page, m_canvas))
      m_report.Add(Severity::kWarning, "mode",
                   *why + " ('set mode " + (m_canvas.height == Canvas::Ntsc().height ? "ntsc" : "pal") +
                       " --rescale' scales it)");
  }

 private:
  void CheckCounts() {
    const Reading* max = m_page.FindPage("buttons.max");
    const Reading* current = m_page.FindPage("buttons.current");
    if (!max) m_report.Add(Severity::kWarning, "buttons.max", "no value");
    if (!m_page.layoutInUse) {
      m_report.Add(Severity::kError, "buttons.current",
                   "no value, so every button property fails to read or write");
    } else if (!current) {
      m_report.Add(Severity::kWarning, "buttons.current",
                   "reads as missing, yet the buttons are taken from the layout for " +
                       std::to_string(*m_page.layoutInUse));
    }
    if (max && current && current->values[0].number > max->values[0].number)
      m_report.Add(Severity::kWarning, "buttons.current",
                   std::to_string(current->values[0].number) + " is above the maximum " +
                       std::to_string(max->values[0].number));
  }

  // Keys holding "default" (which every getter takes for a missing key) and values longer
  // than the buffer the library reads them with.
  void CheckStored(const std::vector<Reading>& readings, unsigned where, long long layout,
                   const std::string& place) {
    for (const Reading& reading : readings) {
      const Property& property = *reading.property;
      for (const KeyRef& ref : KeysOf(property, where, layout)) {
        std::optional<std::string> raw = RawValue(m_edited, ref.section, ref.key);
        if (!raw) continue;
        std::string label = Join(place, property.ShortName());
        if (*raw == "default")
          m_report.Add(Severity::kWarning, label,
                       ref.key + " holds \"default\", which reads as missing");
        else if (raw->size() >= static_cast<std::size_t>(property.readBuffer))
          m_report.Add(Severity::kWarning, label,
                       std::to_string(raw->size()) + " characters, of which only the first " +
                           std::to_string(property.readBuffer - 1) + " are read back");
      }
    }
  }

  // Pictures and music that are named but not there, relative to the template's folder.
  void CheckFiles(const std::vector<Reading>& readings, const std::string& place) {
    for (const Reading& reading : readings) {
      if (!reading.found || !reading.property->inputFile) continue;
      const std::string& name = reading.values[0].text;
      if (name.empty()) continue;
      std::string path = m_file.Resolve(name);
      std::optional<std::string> problem = reading.property->name == "music"
                                               ? InputFileProblem(path)
                                               : PictureProblem(path);
      if (!problem) continue;
      m_report.Add(Severity::kError, Join(place, reading.property->ShortName()),
                   "'" + Echo(name) + "' " + *problem +
                       (*problem == "does not exist" ? " (looked for " : " (") + Echo(path) + ")");
    }
  }

  // The rendered pictures go where "OutputBmp" and "OutMask" say; their folder must be there.
  // A template from elsewhere may aim them at any file ("../.bashrc"), which a render replaces
  // (the renderer replaces only pictures it could have made, but a user should know).
  void CheckOutputs() {
    for (const char* name : {"output", "mask"}) {
      const Reading* reading = m_page.FindPage(name);
      if (!reading || reading->values[0].text.empty()) continue;
      const std::string& given = reading->values[0].text;
      std::string path = m_file.Resolve(given);
      if (std::optional<std::string> problem = OutputProblem(path))
        m_report.Add(Severity::kError, name, "'" + Echo(given) + "' cannot be written: " + Echo(*problem));
      // Any root ("/x", and on Windows "C:\x", "\x" and "C:x") leaves the folder too.
      const std::filesystem::path relative = std::filesystem::path(given).lexically_normal();
      if (relative.has_root_path() || (!relative.empty() && *relative.begin() == ".."))
        m_report.Add(Severity::kWarning, name,
                     "'" + Echo(given) + "' lies outside the template's folder; rendering "
                     "writes " + Echo(path));
    }
  }

  // Colour components are 0..255 on the page; the renderer draws larger ones as 255.
  void CheckColours(const std::vector<Reading>& readings, const std::string& place) {
    for (const Reading& reading : readings) {
      const Property& property = *reading.property;
      if (!reading.found || property.name.size() < 3 ||
          property.name.compare(property.name.size() - 3, 3, "rgb") != 0)
        continue;
      std::string over;
      for (std::size_t i = 0; i < reading.values.size(); ++i)
        if (reading.values[i].number > 255)
          over += std::string(over.empty() ? "" : ", ") + property.slots[i].name + " " +
                  std::to_string(reading.values[i].number);
      for (char& c : over) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      if (!over.empty())
        m_report.Add(Severity::kWarning, Join(place, property.ShortName()),
                     over + " above 255, drawn as 255");
    }
  }

  // A title's text as the renderer reads it: whole, where the library's getter cuts at 79.
  std::string FullText(const std::string& property, unsigned where, long long layout) {
    KeyRef ref = KeysOf(*FindProperty(property), where, layout)[0];
    std::optional<std::string> raw = RawValue(m_edited, ref.section, ref.key);
    if (!raw || *raw == "default") return "";
    return raw->substr(0, 999);  // the renderer reads 1000 bytes, the terminating zero included
  }

  // A title drawn for `area`: cut off by the canvas, outside the title-safe area, in a font
  // that is not installed. Returns the pixels it covers (empty when there is no text).
  render::Rect CheckTitle(const render::Title& title, const render::Rect& area,
                          const std::string& place) {
    if (title.text.empty()) return {};
    const render::Rect box = TitleBox(title, area);
    if (std::optional<std::string> standIn = FontStandIn(title);
        standIn && m_fontsReported.insert(title.fontName).second)
      m_report.Add(Severity::kWarning, place,
                   "font '" + Echo(title.fontName) + "' is not installed; " +
                       (*standIn == "no font at all" ? *standIn : "'" + Echo(*standIn) + "'") +
                       " is drawn instead");
    std::string cut;
    if (box.left < 0) cut = "left";
    else if (box.right > m_canvas.width) cut = "right";
    else if (box.top < 0) cut = "top";
    else if (box.bottom > m_canvas.height) cut = "bottom";
    if (!cut.empty())
      m_report.Add(Severity::kError, place,
                   "cut off at the " + cut + " edge: the text covers " + BoxText(box) + " of the " +
                       std::to_string(m_canvas.width) + "x" + std::to_string(m_canvas.height) +
                       " canvas");
    else if (!Inside(box, m_canvas.SafeArea()))
      m_report.Add(Severity::kWarning, place,
                   "the text covers " + BoxText(box) + ", outside the title-safe area " +
                       RectText(m_canvas.SafeArea()) + " that every television shows");
    return box;
  }

  // What makes a button look wrong on a television: edges on odd lines, outside the
  // title-safe area, a frame that flickers or squashes the picture, colours beyond 255.
  void CheckLook(const Placed& button, const std::vector<Reading>& readings,
                 const std::string& place) {
    CheckColours(readings, place);
    const tagRECT& r = button.rect;
    if (!IsProper(r) || !m_canvas.Contains(r)) return;
    if (r.top % 2 || r.bottom % 2)
      m_report.Add(Severity::kWarning, place,
                   "top " + std::to_string(r.top) + " and bottom " + std::to_string(r.bottom) +
                       ": an edge on an odd line flickers on interlaced television; use even lines");
    if (!Inside(ToRender(r), m_canvas.SafeArea()))
      m_report.Add(Severity::kWarning, place,
                   "rectangle " + RectText(r) + " lies outside the title-safe area " +
                       RectText(m_canvas.SafeArea()) + " that every television shows");
    const Reading* frame = Find(readings, button.name.rfind("button ", 0) == 0 ? "button.frame.size" : "nav.frame.size");
    if (!frame) return;
    const long long thickness = frame->values[0].number;
    if (thickness < 2) {
      m_report.Add(Severity::kWarning, Join(place, "frame.size"),
                   std::to_string(thickness) +
                       " px: a frame thinner than 2 lines flickers (or vanishes) on interlaced "
                       "television");
      return;
    }
    const render::Rect rect = ToRender(r);
    const int ring = render::RingWidth(rect, static_cast<int>(std::min<long long>(thickness, INT32_MAX)));
    const render::Rect inner = rect.Inset(ring);
    const Reading* picture = FindShort(readings, "picture");
    if (!picture || picture->values[0].text.empty()) return;
    const double aspect = static_cast<double>(rect.Width()) / rect.Height();
    const double innerAspect = inner.Empty() ? 0 : static_cast<double>(inner.Width()) / inner.Height();
    if (inner.Empty())
      m_report.Add(Severity::kWarning, Join(place, "frame.size"),
                   std::to_string(thickness) + " px fills the whole button: its picture is not shown");
    else if (innerAspect < aspect * 0.9 || innerAspect > aspect * 1.1 ||
             inner.Width() * 2 < rect.Width() || inner.Height() * 2 < rect.Height())
      m_report.Add(Severity::kWarning, Join(place, "frame.size"),
                   std::to_string(thickness) + " px leaves " + std::to_string(inner.Width()) + "x" +
                       std::to_string(inner.Height()) + " of the " + std::to_string(rect.Width()) +
                       "x" + std::to_string(rect.Height()) +
                       " button for its picture, which is squashed into it");
  }

  std::vector<Placed> NavButtons() {
    std::vector<Placed> placed;
    for (unsigned nav : {0u, 1u}) {
      std::string name = nav ? "next button" : "previous button";
      CheckStored(m_page.nav[nav], nav, 0, name);
      const Reading* enabled = Find(m_page.nav[nav], "nav.enabled");
      if (enabled && !enabled->values[0].number) continue;
      CheckFiles(m_page.nav[nav], name);
      const Reading* rect = Find(m_page.nav[nav], "nav.rect");
      if (!rect) {
        m_report.Add(Severity::kError, name, "shown on the page but has no rectangle");
        continue;
      }
      placed.push_back({name, RectOf(*rect)});
      CheckRect(placed.back(), "");
      CheckLook(placed.back(), m_page.nav[nav], name);
    }
    return placed;
  }

  void CheckLayout(const LayoutReading& layout, const std::vector<Placed>& navs) {
    const std::string where = "layout " + std::to_string(layout.count);
    if (layout.buttons.empty()) {
      m_report.Add(layout.current ? Severity::kError : Severity::kWarning, where,
                   layout.current ? "no buttons in the layout in use"
                                  : "no buttons: the page is empty at this count");
      return;
    }
    if (static_cast<long long>(layout.buttons.size()) != layout.count)
      m_report.Add(Severity::kWarning, where,
                   std::to_string(layout.buttons.size()) + " buttons found for a count of " +
                       std::to_string(layout.count));
    // Buttons and titles are found on the canvas through grids; a search stops once it has
    // found more than are listed, which bounds its cost whatever the layout.
    const render::Rect canvas{0, 0, m_canvas.width, m_canvas.height};
    BoxGrid buttons(canvas);
    std::vector<Placed> placed = navs;
    for (std::size_t k = 0; k < placed.size(); ++k)
      if (IsProper(placed[k].rect)) buttons.Add(k, ToRender(placed[k].rect));
    std::vector<PlacedTitle> titles;
    int overlaps = 0;
    for (const ButtonReading& button : layout.buttons) {
      std::string name = button.Name();
      std::string place = Join(where, name);
      if (!button.number)
        m_report.Add(Severity::kWarning, place,
                     "the tool numbers buttons from library index 2 (an earlier menutemplate "
                     "or another program wrote this one); the navigation values of index 0 and 1 "
                     "do not read back");
      CheckStored(button.properties, button.index, layout.count, place);
      CheckFiles(button.properties, place);
      const Reading* rect = button.Find("button.rect");
      if (!rect) {
        m_report.Add(Severity::kError, place, "no rectangle");
        continue;
      }
      Placed here{name, RectOf(*rect)};
      CheckRect(here, where);
      CheckLook(here, button.properties, place);
      if (IsProper(here.rect)) {
        if (Searching(&overlaps, where, "overlapping buttons"))
          for (std::size_t k : buttons.Find(ToRender(here.rect))) {
            m_report.Add(Severity::kError, place, "overlaps the " + placed[k].name);
            ++overlaps;
          }
        buttons.Add(placed.size(), ToRender(here.rect));
      }
      placed.push_back(here);
      const render::Rect box =
          CheckTitle(TitleOf(button.properties, FullText("button.title", button.index, layout.count)),
                     ToRender(here.rect), Join(place, "title"));
      if (!box.Empty()) titles.push_back({name, box});
    }
    // A title over another button, or over another button's title, spoils both.
    BoxGrid titleGrid(canvas);
    for (std::size_t i = 0; i < titles.size(); ++i) titleGrid.Add(i, titles[i].box);
    int runs = 0;
    for (std::size_t i = 0; i < titles.size(); ++i) {
      const std::string place = Join(where, titles[i].owner + ", title");
      if (!Searching(&runs, where, "titles running over buttons or titles")) break;
      for (std::size_t k : buttons.Find(titles[i].box))
        if (placed[k].name != titles[i].owner) {
          m_report.Add(Severity::kError, place, "runs over the " + placed[k].name);
          ++runs;
        }
      for (std::size_t j : titleGrid.Find(titles[i].box))
        if (j > i) {
          m_report.Add(Severity::kError, place, "runs over the title of " + titles[j].owner);
          ++runs;
        }
    }
  }

  // Whether to search on, having found `*found` of `what`: once more were found than are
  // listed, says that the rest are not searched for (once) and gives up.
  bool Searching(int* found, const std::string& where, const char* what) {
    if (*found <= kListed) return true;
    if (*found != INT32_MAX)
      m_report.Add(Severity::kError, where,
                   std::string("more ") + what + " than are listed; not all were looked for");
    *found = INT32_MAX;
    return false;
  }

  void CheckRect(const Placed& button, const std::string& where) {
    std::string place = Join(where, button.name);
    if (!IsProper(button.rect))
      m_report.Add(Severity::kError, place,
                   "rectangle " + RectText(button.rect) + " is empty or inverted");
    else if (!m_canvas.Contains(button.rect))
      m_report.Add(Severity::kError, place,
                   "rectangle " + RectText(button.rect) + " reaches outside the " +
                       std::to_string(m_canvas.width) + "x" + std::to_string(m_canvas.height) +
                       " canvas");
  }

  static const Reading* Find(const std::vector<Reading>& readings, const std::string& name) {
    for (const Reading& r : readings)
      if (r.property->name == name) return r.found ? &r : nullptr;
    return nullptr;
  }
  static const Reading* FindShort(const std::vector<Reading>& readings, const std::string& name) {
    for (const Reading& r : readings)
      if (r.property->ShortName() == name) return r.found ? &r : nullptr;
    return nullptr;
  }
  static std::string BoxText(const render::Rect& r) {
    return RectText({r.left, r.top, r.right, r.bottom});
  }
  static std::string Join(const std::string& a, const std::string& b) {
    return a.empty() ? b : a + ", " + b;
  }

  const TemplatePath& m_file;
  const std::string& m_edited;
  const PageReading& m_page;
  bool m_layoutInUseOnly;
  Report& m_report;
  Canvas m_canvas = Canvas::Ntsc();
  std::set<std::string> m_fontsReported;  // a missing font is named once
};

}  // namespace

int CheckTemplate(const std::string& file, std::ostream& out, int* errors,
                  const CheckScope& scope) {
  TemplatePath path(file);
  // Not even read when the renderer would refuse it.
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path.library(), error);
  if (!error && size > tolvex::render::kMaxTemplateBytes)
    throw ToolError(file, "is " + std::to_string(size >> 20) + " MB, more than the " +
                              std::to_string(tolvex::render::kMaxTemplateBytes >> 20) +
                              " MB a template may have for the renderer; not checked");
  TemplateSession session(path, TemplateSession::Purpose::kRead);
  PageReading page = ReadPage(session);
  Report report(scope.name.empty() ? file : scope.name, out);
  Checker(path, session.path(), page, scope.layoutInUseOnly, &report).Run();
  report.Finish();
  if (errors) *errors = report.errors();
  return report.Status();
}

int RunCheck(const std::string& file) {
  int status = CheckTemplate(file, std::cout, nullptr);
  if (status == kExitOk) std::cout << file << ": no problems found\n";
  return status;
}

}  // namespace menutool
