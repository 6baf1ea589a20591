// The check command: reads the whole page (in an edit) and reports, one line each, what
// will go wrong when the page is rendered or used: counts and layouts that do not agree,
// buttons off the canvas or on top of each other, files that are not there, values that read
// as missing because they hold "default", and texts that the library's 80- or 1000-byte read
// buffers will cut. Exit 0 when clean, 1 with warnings, 2 with errors.
#include "tools/Canvas.h"
#include "tools/Commands.h"
#include "tools/PageReader.h"
#include "tools/RawProfile.h"
#include "tools/TemplateSession.h"
#include "tools/ToolError.h"

#include <iostream>
#include <sstream>

#include <unistd.h>

namespace menutool {
namespace {

enum class Severity { kWarning, kError };

class Report {
 public:
  explicit Report(const std::string& file) : m_file(file) {}
  void Add(Severity severity, const std::string& where, const std::string& what) {
    (severity == Severity::kError ? m_errors : m_warnings)++;
    std::cout << m_file << ": " << (severity == Severity::kError ? "error" : "warning") << ": "
              << (where.empty() ? "" : where + ": ") << what << "\n";
  }
  int Status() const { return m_errors ? kExitError : m_warnings ? kExitMissing : kExitOk; }

 private:
  std::string m_file;
  int m_errors = 0;
  int m_warnings = 0;
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

class Checker {
 public:
  // `edited` is the name under which the session reaches the template's edit.
  Checker(const TemplatePath& file, const std::string& edited, const PageReading& page,
          Report* report)
      : m_file(file), m_edited(edited), m_page(page), m_report(*report) {}

  void Run() {
    CheckCounts();
    const Reading* mode = m_page.FindPage("mode");
    if (!mode) m_report.Add(Severity::kWarning, "mode", "no value; taking the NTSC canvas 720x480");
    m_canvas = Canvas::For(!mode || mode->values[0].number != 0);

    CheckStored(m_page.page, 0, 0, "");
    CheckFiles(m_page.page, "");
    std::vector<Placed> navs = NavButtons();
    for (const LayoutReading& layout : m_page.layouts) CheckLayout(layout, navs);
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
      if (access(path.c_str(), R_OK) != 0)
        m_report.Add(Severity::kError, Join(place, reading.property->ShortName()),
                     "'" + name + "' does not exist (looked for " + path + ")");
    }
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
    std::vector<Placed> placed = navs;
    for (const ButtonReading& button : layout.buttons) {
      std::string name = button.Name();
      std::string place = Join(where, name);
      CheckStored(button.properties, button.index, layout.count, place);
      CheckFiles(button.properties, place);
      const Reading* rect = button.Find("button.rect");
      if (!rect) {
        m_report.Add(Severity::kError, place, "no rectangle");
        continue;
      }
      Placed here{name, RectOf(*rect)};
      CheckRect(here, where);
      for (const Placed& other : placed)
        if (IsProper(here.rect) && IsProper(other.rect) && Overlap(here.rect, other.rect))
          m_report.Add(Severity::kError, place, "overlaps the " + other.name);
      placed.push_back(here);
    }
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
  static std::string Join(const std::string& a, const std::string& b) {
    return a.empty() ? b : a + ", " + b;
  }

  const TemplatePath& m_file;
  const std::string& m_edited;
  const PageReading& m_page;
  Report& m_report;
  Canvas m_canvas = Canvas::Ntsc();
};

}  // namespace

int RunCheck(const std::string& file) {
  TemplatePath path(file);
  TemplateSession session(path, TemplateSession::Purpose::kRead);
  PageReading page = ReadPage(session);
  Report report(file);
  Checker(path, session.path(), page, &report).Run();
  if (report.Status() == kExitOk) std::cout << file << ": no problems found\n";
  return report.Status();
}

}  // namespace menutool
