// Reading a whole page through CMenuTemplate in an uncommitted session (see PageReader.h).
#include "tools/page/PageReader.h"

#include "tools/page/RawProfile.h"
#include "tools/cli/ToolError.h"

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

// The buttons of the layout now selected in `menu`: every index that its section has a key
// for. One listing of the section's keys finds them; probing indexes through the getters would
// cost a profile read of the whole file per key.
std::vector<ButtonReading> ReadButtons(CMenuTemplate& menu, const std::string& path,
                                       long long count) {
  std::set<unsigned> indexes;
  for (const std::string& key : KeyNames(path, "NumOfButton" + std::to_string(count)))
    if (auto index = ButtonIndexOfKey(key)) indexes.insert(*index);
  std::vector<ButtonReading> buttons;
  for (unsigned index : indexes)
    buttons.push_back({index, ButtonNumber(index), ReadScope(menu, Scope::kButton, index)});
  return buttons;
}

}  // namespace

std::string ButtonReading::Name() const {
  if (number) return "button " + std::to_string(*number);
  return "library index " + std::to_string(static_cast<int32_t>(index));
}

const Reading* ButtonReading::Find(const std::string& name) const {
  return FindIn(properties, name);
}

const Reading* PageReading::FindPage(const std::string& name) const { return FindIn(page, name); }

PageReading ReadPage(TemplateSession& session) {
  CMenuTemplate& menu = session.menu();
  const std::string& path = session.path();
  PageReading page;
  page.page = ReadScope(menu, Scope::kPage, 0);
  page.nav[0] = ReadScope(menu, Scope::kNav, 0);
  page.nav[1] = ReadScope(menu, Scope::kNav, 1);
  page.layoutInUse = LayoutInUse(path);

  std::set<long long> sections;
  for (const std::string& name : SectionNames(path))
    if (auto count = LayoutCount(name)) sections.insert(*count);
  std::set<long long> counts = sections;
  if (const Reading* max = page.FindPage("buttons.max"))
    for (long long n = 1; n <= std::min(max->values[0].number, kLayoutBound); ++n) counts.insert(n);
  if (page.layoutInUse) counts.insert(*page.layoutInUse);
  const std::optional<std::string> countText =
      RawValue(path, "Background", "CurrentNumberOfButton");

  // The layout in use first, while "CurrentNumberOfButton" still holds its own text.
  if (page.layoutInUse) {
    page.layouts.push_back({*page.layoutInUse, true, sections.count(*page.layoutInUse) > 0,
                            ReadButtons(menu, path, *page.layoutInUse)});
  }
  for (long long count : counts) {
    if (page.layoutInUse && count == *page.layoutInUse) continue;
    if (!menu.SetCurrentNumOfButtons(static_cast<unsigned int>(count)))
      throw ToolError(path, "cannot switch the edit to another layout");
    page.layouts.push_back(
        {count, false, sections.count(count) > 0, ReadButtons(menu, path, count)});
  }
  // Put back as it was, so that a command that goes on to change the page changes only that.
  if (page.layouts.size() > 1 &&
      !WriteRawValue(path, "Background", "CurrentNumberOfButton", countText))
    throw ToolError(path, "cannot switch the edit back to the layout in use");
  std::sort(page.layouts.begin(), page.layouts.end(),
            [](const LayoutReading& a, const LayoutReading& b) { return a.count < b.count; });
  return page;
}

}  // namespace menutool
