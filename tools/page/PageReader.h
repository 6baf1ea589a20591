// Reads a whole menu page the way the library reads it: the page-wide values, the previous and
// next buttons, and every layout with the buttons found in it. The reading is done in a session
// (layouts are reached by switching "CurrentNumberOfButton" in its edit, which is put back
// afterwards), so it never touches the file. Used by show, check and set mode.
#ifndef TOLVEX_TOOLS_PAGEREADER_H
#define TOLVEX_TOOLS_PAGEREADER_H

#include "tools/page/ButtonNumber.h"
#include "tools/page/Properties.h"
#include "tools/page/TemplateSession.h"

#include <optional>
#include <string>
#include <vector>

namespace menutool {

// One property as read at one place; `found` is the getter's result.
struct Reading {
  const Property* property;
  bool found = false;
  Values values;
};

// A button that its layout section has keys for, at any library index.
struct ButtonReading {
  unsigned index;                   // the library's index
  std::optional<unsigned> number;   // the tool's button number, when the index has one
  std::vector<Reading> properties;  // every button.* property, in table order
  // "button 3", or "library index 1" for an index without a button number.
  std::string Name() const;
  // The reading of `name` ("button.rect"), or nullptr when it was not found.
  const Reading* Find(const std::string& name) const;
};

struct LayoutReading {
  long long count;
  bool current;     // the layout the per-button calls use now
  bool hasSection;  // the file holds a "NumOfButton<count>" section
  std::vector<ButtonReading> buttons;
};

struct PageReading {
  std::vector<Reading> page;    // every page-wide property, in table order
  std::vector<Reading> nav[2];  // every nav.* property of prev (0) and next (1)
  std::optional<long long> layoutInUse;  // as the library's lookup finds it
  std::vector<LayoutReading> layouts;    // ascending by count
  const Reading* FindPage(const std::string& name) const;
};

// Layouts for counts 1..maximum are looked for only up to this maximum.
constexpr long long kLayoutBound = 99;

// Reads the page held in `session`; "CurrentNumberOfButton" is switched to each layout and then
// put back as it was.
PageReading ReadPage(TemplateSession& session);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PAGEREADER_H
