// The get and set commands: one property of the table, read from or written to a template
// through CMenuTemplate. set makes its change in one edit of the file, so a setter of several
// keys that fails half-way leaves the file as it was.
#include "tools/Commands.h"
#include "tools/Properties.h"
#include "tools/RawProfile.h"
#include "tools/TemplatePath.h"
#include "tools/TemplateSession.h"
#include "tools/ToolError.h"

#include <iostream>

namespace menutool {
namespace {

struct Target {
  const Property* property;
  unsigned where = 0;
  std::string label;  // "button.title of button 2", for messages
};

Target Address(const PropertyOptions& options, const TemplatePath& file) {
  const Property* property = FindProperty(options.property);
  if (!property)
    throw ToolError(file.given(), "unknown property '" + options.property +
                                      "' (menutemplate --help lists them)");
  Target target{property, 0, property->name};
  bool wantsButton = property->scope == Scope::kButton, wantsNav = property->scope == Scope::kNav;
  if (wantsButton != options.button.has_value())
    throw ToolError(file.given(), property->name + (wantsButton ? " needs --button I"
                                                                : " takes no --button"));
  if (wantsNav != options.nav.has_value())
    throw ToolError(file.given(), property->name + (wantsNav ? " needs --nav prev|next"
                                                             : " takes no --nav"));
  if (wantsButton) {
    target.where = *options.button;
    target.label += " of button " + std::to_string(target.where);
  }
  if (wantsNav) {
    target.where = *options.nav == "prev" ? 0 : 1;
    target.label += " of the " + *options.nav + " button";
  }
  return target;
}

// Button properties live in the layout that "CurrentNumberOfButton" selects; without it every
// button call fails, which deserves its own message.
void RequireLayout(const Target& target, const TemplatePath& file, const std::string& path) {
  if (target.property->scope == Scope::kButton && !LayoutInUse(path))
    throw ToolError(file.given(), target.label +
                                      ": no current button count, so there is no layout "
                                      "(set buttons.current first)");
}

}  // namespace

int RunGet(const PropertyOptions& options) {
  TemplatePath file(options.file);
  Target target = Address(options, file);
  file.RequireReadable();
  RequireLayout(target, file, file.library());
  CMenuTemplate menu{CString(file.library().c_str())};
  Values values;
  if (!target.property->get(menu, target.where, &values))
    throw ToolError(file.given(), target.label + ": no value (missing, or holds \"default\")",
                    kExitMissing);
  std::string line;
  for (std::size_t i = 0; i < values.size(); ++i)
    line += (i ? " " : "") + FormatValue(target.property->slots[i].kind, values[i]);
  std::cout << line << "\n";
  return kExitOk;
}

int RunSet(const PropertyOptions& options) {
  TemplatePath file(options.file);
  Target target = Address(options, file);
  const Property& property = *target.property;
  if (options.values.size() != property.slots.size())
    throw ToolError(file.given(),
                    property.name + " takes " + std::to_string(property.slots.size()) +
                        (property.slots.size() == 1 ? " value (" : " values (") +
                        property.ValueNames() + "), got " + std::to_string(options.values.size()));
  Values values;
  for (std::size_t i = 0; i < options.values.size(); ++i) {
    std::string why;
    auto value = ParseValue(property.slots[i].kind, options.values[i], &why);
    if (!value)
      throw ToolError(file.given(), property.name + " " + property.slots[i].name + ": " + why);
    values.push_back(*value);
  }
  TemplateSession edit(file, TemplateSession::Purpose::kChange);
  RequireLayout(target, file, edit.path());
  if (!property.set(edit.menu(), target.where, values))
    throw ToolError(file.given(), "cannot write " + target.label);
  edit.Commit();
  if (property.name == "button.navinfo" && target.where <= 1)
    std::cerr << "menutemplate: note: the library keeps the navigation values of button "
              << target.where << " in the " << (target.where ? "NextButton" : "PrevButton")
              << " section, where get does not read them\n";
  return kExitOk;
}

}  // namespace menutool
