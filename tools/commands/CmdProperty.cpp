// The get and set commands: one property of the table, read from or written to a template
// through CMenuTemplate. set makes its change in one edit of the file, so a setter of several
// keys that fails half-way leaves the file as it was. Buttons are addressed by their
// tool number (see ButtonNumber.h); set warns at once about what will not read back.
#include "tools/page/ButtonNumber.h"
#include "tools/cli/Commands.h"
#include "tools/page/PageReader.h"
#include "tools/page/Properties.h"
#include "tools/page/RawProfile.h"
#include "tools/page/Rescale.h"
#include "tools/page/TemplatePath.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"

#include <iostream>

namespace menutool {
namespace {

struct Target {
  const Property* property;
  unsigned where = 0;   // the library's index or navigation selector
  unsigned number = 0;  // the tool's button number, for button.* properties
  std::string label;    // "button.title of button 2", for messages
};

Target Address(const PropertyOptions& options, const TemplatePath& file) {
  const Property* property = FindProperty(options.property);
  if (!property)
    throw ToolError(file.given(), "unknown property '" + options.property +
                                      "' (menutemplate --help lists them)");
  Target target{property, 0, 0, property->name};
  bool wantsButton = property->scope == Scope::kButton, wantsNav = property->scope == Scope::kNav;
  if (wantsButton != options.button.has_value())
    throw ToolError(file.given(), property->name + (wantsButton ? " needs --button I"
                                                                : " takes no --button"));
  if (wantsNav != options.nav.has_value())
    throw ToolError(file.given(), property->name + (wantsNav ? " needs --nav prev|next"
                                                             : " takes no --nav"));
  if (wantsButton) {
    target.number = *options.button;
    if (target.number < 1 || target.number > kLastButtonNumber)
      throw ToolError(file.given(), "--button " + std::to_string(target.number) +
                                        ": buttons are numbered from 1");
    target.where = LibraryIndex(target.number);
    target.label += " of button " + std::to_string(target.number);
  }
  if (wantsNav) {
    target.where = *options.nav == "prev" ? 0 : 1;
    target.label += " of the " + *options.nav + " button";
  }
  return target;
}

// Button properties live in the layout that "CurrentNumberOfButton" selects; without it every
// button call fails, which deserves its own message. A layout for N buttons has buttons 1..N.
void RequireLayout(const Target& target, const TemplatePath& file) {
  if (target.property->scope != Scope::kButton) return;
  std::optional<long long> count = LayoutInUse(file.library());
  if (!count)
    throw ToolError(file.given(), target.label +
                                      ": no current button count, so there is no layout "
                                      "(set buttons.current first)");
  if (target.number > *count)
    throw ToolError(file.given(),
                    "--button " + std::to_string(target.number) + " is out of range: the layout in use has " +
                        (*count > 0 ? "buttons 1.." + std::to_string(*count) : "no buttons") +
                        " (buttons.current)");
}

// What will not read back as written, said before the command ends: a text longer than the
// buffer the library reads it with.
void WarnAboutReadBack(const Target& target, const Values& values) {
  if (std::optional<std::string> warning = target.property->ReadBackWarning(values))
    std::cerr << "menutemplate: warning: " << target.label << " " << *warning << "\n";
}

// After the mode changed to `ntsc` (or PAL): scales the layout with `rescale`, else warns when
// it looks sized for the other standard.
void ChangeCanvas(const PageReading& before, bool ntsc, bool rescale, const TemplatePath& file,
                  CMenuTemplate& menu) {
  const Reading* mode = before.FindPage("mode");
  const Canvas from = Canvas::For(!mode || mode->values[0].number != 0), to = Canvas::For(ntsc);
  if (rescale) {
    if (from.height != to.height && !RescalePage(menu, before, from, to))
      throw ToolError(file.given(), "cannot write the rescaled layout");
    return;
  }
  if (std::optional<std::string> why = SizedForOtherStandard(before, to))
    std::cerr << "menutemplate: warning: " << *why << " (add --rescale to scale it to "
              << to.width << "x" << to.height << ")\n";
}

}  // namespace

int RunGet(const PropertyOptions& options) {
  TemplatePath file(options.file);
  Target target = Address(options, file);
  file.RequireReadable();
  RequireLayout(target, file);
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
  const bool newMode = property.name == "mode";
  if (options.rescale && !newMode) throw ToolError(file.given(), "--rescale goes only with mode");

  // Every read below goes to the edit too, so the change is made on what it reads.
  TemplateSession edit(file, TemplateSession::Purpose::kChange);
  RequireLayout(target, file);
  WarnAboutReadBack(target, values);
  // The page as it was, for scaling it to the canvas of the new mode.
  std::optional<PageReading> before;
  if (newMode) before = ReadPage(edit);
  if (!property.set(edit.menu(), target.where, values))
    throw ToolError(file.given(), "cannot write " + target.label);
  if (newMode) ChangeCanvas(*before, values[0].number != 0, options.rescale, file, edit.menu());
  edit.Commit();
  return kExitOk;
}

}  // namespace menutool
