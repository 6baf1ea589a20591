// The show command: the whole page as the library reads it, as JSON for programs or as an
// indented listing for people. PageReader reads it in an edit that is never committed, so the
// template file is left byte for byte as it was. The JSON's texts are Unicode (JsonText.h).
#include "tools/cli/Commands.h"
#include "tools/page/PageReader.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"

#include <nlohmann/json.hpp>

#include <cctype>
#include <iostream>

namespace menutool {
namespace {

using nlohmann::json;

// A missing value is null; one value stands alone; several form an object by slot name.
json ToJson(const Reading& reading) {
  if (!reading.found) return nullptr;
  const auto& slots = reading.property->slots;
  if (slots.size() == 1) return ValueToJson(slots[0].kind, reading.values[0]);
  json object = json::object();
  for (std::size_t i = 0; i < slots.size(); ++i) {
    std::string key = slots[i].name;
    for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    object[key] = ValueToJson(slots[i].kind, reading.values[i]);
  }
  return object;
}

json ToJson(const std::vector<Reading>& readings) {
  json object = json::object();
  for (const Reading& r : readings) object[r.property->ShortName()] = ToJson(r);
  return object;
}

json PageJson(const std::string& file, const PageReading& page) {
  json layouts = json::array();
  for (const LayoutReading& layout : page.layouts) {
    json buttons = json::array();
    for (const ButtonReading& button : layout.buttons) {
      json entry = ToJson(button.properties);
      entry["button"] = button.number ? json(*button.number) : json(nullptr);
      entry["index"] = static_cast<int32_t>(button.index);
      buttons.push_back(std::move(entry));
    }
    layouts.push_back({{"count", layout.count},
                       {"current", layout.current},
                       {"section", layout.hasSection},
                       {"buttons", std::move(buttons)}});
  }
  return {{"file", file},
          {"page", ToJson(page.page)},
          {"prev", ToJson(page.nav[0])},
          {"next", ToJson(page.nav[1])},
          {"layoutInUse", page.layoutInUse ? json(*page.layoutInUse) : json(nullptr)},
          {"layouts", std::move(layouts)}};
}

std::string Text(const Reading& reading) {
  if (!reading.found) return "(missing)";
  std::string text;
  for (std::size_t i = 0; i < reading.values.size(); ++i) {
    std::string value = FormatValue(reading.property->slots[i].kind, reading.values[i]);
    if (reading.property->slots[i].kind == Kind::kText) value = "\"" + value + "\"";
    text += (i ? " " : "") + value;
  }
  return text;
}

void PrintBlock(const std::vector<Reading>& readings, const std::string& indent) {
  std::size_t width = 0;
  for (const Reading& r : readings) width = std::max(width, r.property->ShortName().size());
  for (const Reading& r : readings) {
    std::string name = r.property->ShortName();
    std::cout << indent << name << std::string(width + 2 - name.size(), ' ') << Text(r) << "\n";
  }
}

void PrintPage(const std::string& file, const PageReading& page) {
  std::cout << "Template " << file << "\n\nPage\n";
  PrintBlock(page.page, "  ");
  for (unsigned nav : {0u, 1u}) {
    std::cout << "\n" << (nav ? "Next" : "Previous") << " button\n";
    PrintBlock(page.nav[nav], "  ");
  }
  for (const LayoutReading& layout : page.layouts) {
    std::cout << "\nLayout for " << layout.count << (layout.count == 1 ? " button" : " buttons")
              << (layout.current ? " (in use)" : "")
              << (layout.hasSection ? "" : ": not in the file") << "\n";
    for (const ButtonReading& button : layout.buttons) {
      std::cout << "  " << button.Name() << "\n";
      PrintBlock(button.properties, "    ");
    }
  }
}

}  // namespace

int RunShow(const std::string& file, bool asJson) {
  TemplatePath path(file);
  TemplateSession session(path, TemplateSession::Purpose::kRead);
  PageReading page = ReadPage(session);
  if (asJson)
    std::cout << PageJson(file, page).dump(2, ' ', false, json::error_handler_t::replace) << "\n";
  else
    PrintPage(file, page);
  return kExitOk;
}

}  // namespace menutool
