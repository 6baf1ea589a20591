// Reading a whole page through CMenuTemplate on a scratch copy (see PageReader.h).
#include "tools/PageReader.h"

#include "tools/RawProfile.h"

#include <algorithm>
#include <set>

namespace menutool {
namespace {

Reading Read(CMenuTemplate& menu, const Property& property, unsigned where) {
  Reading reading{&property, false, {}};
  reading.found = property.get(menu, where, &reading.values);
  return reading;
}

std::vector<Reading> ReadScope(CMenuTemplate& menu, Scope scope, unsigned where) {
  std::vector<Reading> readings;
  for (const Property& property : Properties())
    if (property.scope == scope) readings.push_back(Read(menu, property, where));
  return readings;
}

const Reading* FindIn(const std::vector<Reading>& readings, const std::string& name) {
  for (const Reading& r : readings)
    if (r.property->name == name) return r.found ? &r : nullptr;
  return nullptr;
}

// The buttons of the layout now selected in `menu`: every index that has any value.
std::vector<ButtonReading> ReadButtons(CMenuTemplate& menu, long long count) {
  unsigned last = static_cast<unsigned>(std::clamp<long long>(count, 0, 999));
  last = std::max(last, kButtonIndexBound);
  std::vector<ButtonReading> buttons;
  for (unsigned index = 0; index <= last; ++index) {
    ButtonReading button{index, ReadScope(menu, Scope::kButton, index)};
    if (std::any_of(button.properties.begin(), button.properties.end(),
                    [](const Reading& r) { return r.found; }))
      buttons.push_back(std::move(button));
  }
  return buttons;
}

}  // namespace

const Reading* ButtonReading::Find(const std::string& name) const {
  return FindIn(properties, name);
}

const Reading* PageReading::FindPage(const std::string& name) const { return FindIn(page, name); }

PageReading ReadPage(const std::string& scratch) {
  CMenuTemplate menu{CString(scratch.c_str())};
  PageReading page;
  page.page = ReadScope(menu, Scope::kPage, 0);
  page.nav[0] = ReadScope(menu, Scope::kNav, 0);
  page.nav[1] = ReadScope(menu, Scope::kNav, 1);
  page.layoutInUse = LayoutInUse(scratch);

  std::set<long long> sections;
  for (const std::string& name : SectionNames(scratch))
    if (auto count = LayoutCount(name)) sections.insert(*count);
  std::set<long long> counts = sections;
  if (const Reading* max = page.FindPage("buttons.max"))
    for (long long n = 1; n <= std::min(max->values[0].number, kLayoutBound); ++n) counts.insert(n);
  if (page.layoutInUse) counts.insert(*page.layoutInUse);

  // The layout in use first, while "CurrentNumberOfButton" still holds its own text.
  if (page.layoutInUse) {
    page.layouts.push_back({*page.layoutInUse, true, sections.count(*page.layoutInUse) > 0,
                            ReadButtons(menu, *page.layoutInUse)});
  }
  for (long long count : counts) {
    if (page.layoutInUse && count == *page.layoutInUse) continue;
    menu.SetCurrentNumOfButtons(static_cast<unsigned int>(count));
    page.layouts.push_back({count, false, sections.count(count) > 0, ReadButtons(menu, count)});
  }
  std::sort(page.layouts.begin(), page.layouts.end(),
            [](const LayoutReading& a, const LayoutReading& b) { return a.count < b.count; });
  return page;
}

}  // namespace menutool
