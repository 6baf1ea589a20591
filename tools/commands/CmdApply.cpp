// The apply command: takes a JSON document in the shape that `show --json` prints, all of it
// or any part, and writes what it holds to the template in one edit, so a script can read a
// page with show, change it and hand it back. Each member of "page", "prev", "next" and of the
// buttons of "layouts" is a property by its show name (a button is found by its "button"
// number or its library "index", a layout by its "count"); null leaves a value as it is, and a
// value of several parts may give only some of them (the others are kept). "file",
// "layoutInUse" and a layout's "current" and "section" are what show found and are not
// applied. The whole document is checked before anything is written, and an unknown name, a
// value of the wrong kind or a write that fails changes nothing. The document is untrusted
// input: it is read within a size limit, its nesting is bounded before it is parsed (the parser
// and the JSON values recurse), and a message repeats at most a short, escaped piece of it.
#include "tools/io/BoundedInput.h"
#include "tools/page/ButtonNumber.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Echo.h"
#include "tools/page/Properties.h"
#include "tools/page/RawProfile.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"

#include "renderer/InputFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <set>
#include <string_view>

namespace menutool {
namespace {

using nlohmann::json;

// A document of changes is never larger than the template it is applied to may become: the
// renderer reads no template over this size.
constexpr std::size_t kMaxChangesBytes = tolvex::render::kMaxTemplateBytes;
// How deeply arrays and objects may nest. A page nests 5 deep (layouts, a layout, its buttons,
// a button, a rectangle); the limit leaves room for that and keeps the parser's recursion,
// and that of the values it builds, far from the end of the stack.
constexpr std::size_t kMaxDepth = 32;

// One property to write: its values by slot, those the document leaves out still empty.
struct Change {
  const Property* property;
  unsigned where;
  std::vector<std::optional<Value>> slots;
  std::string label;  // where the document gives it, "layouts[1].buttons[0].rect", for messages
};

struct LayoutChanges {
  unsigned count;  // as SetCurrentNumOfButtons takes it
  std::vector<Change> buttons;
};

struct Plan {
  std::vector<Change> page;  // page-wide, then previous and next buttons
  std::vector<LayoutChanges> layouts;
};

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

class Reader {
 public:
  explicit Reader(const std::string& source) : m_source(source) {}

  Plan Read(const json& document) {
    Require(document.is_object(), "", "the document is not a JSON object");
    Plan plan;
    for (const auto& [name, member] : document.items()) {
      if (name == "page") {
        ReadScope(member, name, Scope::kPage, 0, &plan.page, false);
      } else if (name == "prev" || name == "next") {
        ReadScope(member, name, Scope::kNav, name == "next", &plan.page, false);
      } else if (name == "layouts") {
        Require(member.is_array(), name, "is not an array");
        for (std::size_t i = 0; i < member.size(); ++i)
          plan.layouts.push_back(ReadLayout(member[i], name + "[" + std::to_string(i) + "]"));
      } else {
        Require(name == "file" || name == "layoutInUse", Echo(name), "is not part of a page");
      }
    }
    return plan;
  }

 private:
  void Require(bool holds, const std::string& at, const std::string& what) const {
    if (!holds) throw ToolError(m_source, (at.empty() ? "" : at + ": ") + what);
  }

  // A whole number in [lo, hi], as a layout count or button index.
  long long Number(const json& value, const std::string& at, long long lo, long long hi) const {
    Require(value.is_number_integer() &&
                !(value.is_number_unsigned() && value.get<unsigned long long>() > UINT32_MAX) &&
                value.get<long long>() >= lo && value.get<long long>() <= hi,
            at, EchoJson(value) + " is not a whole number from " + std::to_string(lo) + " to " +
                    std::to_string(hi));
    return value.get<long long>();
  }

  // The library index of a button: its "index" as show prints it (with "%d"), or the library
  // index of its tool number "button"; when both are given they must agree.
  unsigned ButtonIndex(const json& button, const std::string& at) const {
    std::optional<unsigned> index, number;
    if (button.contains("index"))
      index = static_cast<unsigned>(Number(button["index"], at + ".index", INT32_MIN, INT32_MAX));
    if (button.contains("button") && !button["button"].is_null())
      number = LibraryIndex(static_cast<unsigned>(
          Number(button["button"], at + ".button", 1, kLastButtonNumber)));
    Require(index || number, at, "has neither \"button\" nor \"index\"");
    Require(!index || !number || index == number, at,
            "\"button\" and \"index\" name different buttons");
    return index ? *index : *number;
  }

  LayoutChanges ReadLayout(const json& layout, const std::string& at) {
    Require(layout.is_object(), at, "is not an object");
    Require(layout.contains("count"), at, "has no \"count\"");
    // Layout sections are named with "%d", so a count reads back from either range.
    LayoutChanges changes{static_cast<unsigned>(
        Number(layout["count"], at + ".count", INT32_MIN, UINT32_MAX)), {}};
    for (const auto& [name, member] : layout.items()) {
      if (name == "buttons") {
        Require(member.is_array(), at + ".buttons", "is not an array");
        for (std::size_t i = 0; i < member.size(); ++i) {
          const std::string here = at + ".buttons[" + std::to_string(i) + "]";
          const json& button = member[i];
          Require(button.is_object(), here, "is not an object");
          ReadScope(button, here, Scope::kButton, ButtonIndex(button, here), &changes.buttons,
                    true);
        }
      } else {
        Require(name == "count" || name == "current" || name == "section",
                at + "." + Echo(name),
                "is not part of a layout");
      }
    }
    return changes;
  }

  // The properties of one scope; a button's "index" and "button" (`isButton`) say which
  // button it is and are no properties.
  void ReadScope(const json& object, const std::string& at, Scope scope, unsigned where,
                 std::vector<Change>* out, bool isButton) {
    Require(object.is_object(), at, "is not an object");
    for (const auto& [name, value] : object.items()) {
      if (isButton && (name == "index" || name == "button")) continue;
      const std::string here = at + "." + Echo(name);
      const Property* property = nullptr;
      for (const Property& p : Properties())
        if (p.scope == scope && p.ShortName() == name) property = &p;
      Require(property != nullptr, here, "no such property (menutemplate --help lists them)");
      if (value.is_null()) continue;
      out->push_back(ReadValues(*property, where, value, here));
    }
  }

  Change ReadValues(const Property& property, unsigned where, const json& value,
                    const std::string& at) {
    Change change{&property, where, {}, at};
    const auto& slots = property.slots;
    change.slots.resize(slots.size());
    if (slots.size() == 1) {
      change.slots[0] = Take(slots[0].kind, value, at);
      return change;
    }
    Require(value.is_object(), at, "is not an object of " + Lower(property.ValueNames()));
    for (const auto& [name, part] : value.items()) {
      std::size_t slot = 0;
      while (slot < slots.size() && Lower(slots[slot].name) != name) ++slot;
      Require(slot < slots.size(), at + "." + Echo(name),
              "is not one of " + Lower(property.ValueNames()));
      if (!part.is_null())
        change.slots[slot] = Take(slots[slot].kind, part, at + "." + Echo(name));
    }
    return change;
  }

  Value Take(Kind kind, const json& value, const std::string& at) const {
    std::string why;
    std::optional<Value> taken = ValueFromJson(kind, value, &why);
    Require(taken.has_value(), at, why);
    return *taken;
  }

  const std::string& m_source;
};

// How deeply arrays and objects nest in the JSON text, found by one pass over it (strings
// skipped) and given up past `limit`; nothing is built, so any depth is safe to measure.
std::size_t NestingDepth(std::string_view text, std::size_t limit) {
  std::size_t depth = 0, deepest = 0;
  bool inString = false;
  for (std::size_t i = 0; i < text.size() && deepest <= limit; ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      else if (c == '"') inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      deepest = std::max(deepest, ++depth);
    } else if ((c == ']' || c == '}') && depth > 0) {
      --depth;
    }
  }
  return deepest;
}

json Load(const std::string& source) {
  const std::string text = ReadBoundedInput(source, kMaxChangesBytes, "the changes");
  if (NestingDepth(text, kMaxDepth) > kMaxDepth)
    throw ToolError(source, "nests arrays and objects more than " + std::to_string(kMaxDepth) +
                                " deep (a page's changes nest 5 deep)");
  json document = json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (document.is_discarded()) throw ToolError(source, "is not valid JSON");
  return document;
}

// The changes in the order they are written.
std::vector<const Change*> AllChanges(const Plan& plan) {
  std::vector<const Change*> all;
  for (const Change& change : plan.page) all.push_back(&change);
  for (const LayoutChanges& layout : plan.layouts)
    for (const Change& change : layout.buttons) all.push_back(&change);
  return all;
}

// Refuses texts that would take the template past the size the renderer reads (counted as if
// each were added to the file as it is now), and warns, as set does, about texts longer than
// the library reads back.
void CheckTexts(const Plan& plan, const TemplatePath& file) {
  std::error_code error;
  std::uintmax_t size = std::filesystem::file_size(file.library(), error);
  if (error) size = 0;
  for (const Change* change : AllChanges(plan)) {
    if (!change->property->IsText() || !change->slots[0]) continue;
    size += change->slots[0]->text.size();
    if (size > tolvex::render::kMaxTemplateBytes)
      throw ToolError(file.given(), change->label + ": " +
                                        std::to_string(change->slots[0]->text.size()) +
                                        " characters would make the template larger than the " +
                                        std::to_string(tolvex::render::kMaxTemplateBytes >> 20) +
                                        " MB the renderer reads");
    if (auto warning = change->property->ReadBackWarning({*change->slots[0]}))
      std::cerr << "menutemplate: warning: " << change->label << " " << *warning << "\n";
  }
}

// Writes one change; a value the document leaves out is taken from the template.
void Write(TemplateSession& edit, const Change& change, const TemplatePath& file) {
  Values values;
  Values current;
  bool haveCurrent = false;
  for (std::size_t i = 0; i < change.slots.size(); ++i) {
    if (change.slots[i]) {
      values.push_back(*change.slots[i]);
      continue;
    }
    if (!haveCurrent && !change.property->get(edit.menu(), change.where, &current))
      throw ToolError(file.given(), change.label + ": gives only some of its values, and the "
                                                   "template has none to keep for the others");
    haveCurrent = true;
    values.push_back(current[i]);
  }
  if (!change.property->set(edit.menu(), change.where, values))
    throw ToolError(file.given(), "cannot write " + change.label);
}

}  // namespace

int RunApply(const std::string& file, const std::string& changes) {
  TemplatePath path(file);
  const Plan plan = Reader(changes).Read(Load(changes));
  CheckTexts(plan, path);

  TemplateSession edit(path, TemplateSession::Purpose::kChange);
  for (const Change& change : plan.page) Write(edit, change, path);
  if (!plan.layouts.empty()) {
    // Buttons are reached by switching the current count to each layout in turn; afterwards it
    // gets back the text it had, as the page settings above left it.
    const std::optional<std::string> count =
        RawValue(edit.path(), "Background", "CurrentNumberOfButton");
    for (const LayoutChanges& layout : plan.layouts) {
      if (layout.buttons.empty()) continue;
      if (!edit.menu().SetCurrentNumOfButtons(layout.count))
        throw ToolError(path.given(), "cannot switch to the layout for " +
                                          std::to_string(static_cast<int32_t>(layout.count)));
      for (const Change& change : layout.buttons) Write(edit, change, path);
    }
    if (!WriteRawValue(edit.path(), "Background", "CurrentNumberOfButton", count))
      throw ToolError(path.given(), "cannot restore buttons.current");
  }
  edit.Commit();
  return kExitOk;
}

}  // namespace menutool
