// Reads a template file into the page model, once and by the profile functions' own parsing
// rules, and decides what missing or odd values mean for drawing.
#include "renderer/TemplateReader.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>
#include <unordered_map>

#include "platform/IniDocument.h"
#include "platform/ResultBuffer.h"
#include "renderer/Failure.h"
#include "renderer/InputFile.h"
#include "renderer/Paths.h"

namespace tolvex::render {
namespace {

constexpr const char* kBackground = "Background";
constexpr const char* kSentinel = "default";
// The application reads file names with 1000 bytes; we read every value that way.
constexpr uint32_t kValueBuffer = 1000;

// Key names of one button: the numbered ones put the index into a pattern, the previous and
// next buttons have fixed names in their own sections.
struct ButtonKeys {
  std::string left, right, top, bottom;
  std::string thickness, red, green, blue;
  std::string framePicture, picture;
};

std::string WithIndex(const char* before, int index, const char* after = "") {
  return before + std::to_string(index) + after;
}

ButtonKeys NumberedKeys(int i) {
  return ButtonKeys{WithIndex("ButtonPosition", i, "_left"), WithIndex("ButtonPosition", i, "_right"),
                    WithIndex("ButtonPosition", i, "_top"),  WithIndex("ButtonPosition", i, "_bottom"),
                    WithIndex("ButtonFrameThickness", i),    WithIndex("ButtonFrame_R", i),
                    WithIndex("ButtonFrame_G", i),           WithIndex("ButtonFrame_B", i),
                    WithIndex("ButtonFrameBmp", i),          WithIndex("ButtonBmp", i)};
}

ButtonKeys NavigationKeys(const std::string& prefix) {  // "ButtonPrev" or "ButtonNext"
  return ButtonKeys{prefix + "ButtonPosition_left", prefix + "ButtonPosition_right",
                    prefix + "ButtonPosition_top",  prefix + "ButtonPosition_bottom",
                    prefix + "FrameThickness",      prefix + "Frame_R",
                    prefix + "Frame_G",             prefix + "Frame_B",
                    prefix + "FrameBmp",            prefix + "Bmp"};
}

// Key names of one title; the page title's keys have no index.
struct TitleKeys {
  std::string text, x, y, font, size, italic, bold, underline, red, green, blue;
};

TitleKeys PageTitleKeys() {
  return TitleKeys{"BackgroundTitle",           "BackgroundTitlePosition_x",
                   "BackgroundTitlePosition_y", "BackgroundTitleFont_Name",
                   "BackgroundTitleFont_Size",  "BackgroundTitleFont_Italic",
                   "BackgroundTitleFont_Bold",  "BackgroundTitleFont_Underline",
                   "BackgroundTitleFont_R",     "BackgroundTitleFont_G",
                   "BackgroundTitleFont_B"};
}

TitleKeys ButtonTitleKeys(int i) {
  return TitleKeys{WithIndex("ButtonTitle", i),
                   WithIndex("ButtonTitlePosition", i, "_x"),
                   WithIndex("ButtonTitlePosition", i, "_y"),
                   WithIndex("ButtonTitleFont_Name", i),
                   WithIndex("ButtonTitleFont_Size", i),
                   WithIndex("ButtonTitleFont_Italic", i),
                   WithIndex("ButtonTitleFont_Bold", i),
                   WithIndex("ButtonTitleFont_Underline", i),
                   WithIndex("ButtonTitleFont_R", i),
                   WithIndex("ButtonTitleFont_G", i),
                   WithIndex("ButtonTitleFont_B", i)};
}

// A colour component as the template stores it: the unsigned value behind the integer text
// (so -1 stands for 4294967295), clamped to what a pixel holds.
uint8_t Component(std::optional<int> value, uint8_t fallback) {
  if (!value) return fallback;
  const auto stored = static_cast<uint32_t>(*value);
  return static_cast<uint8_t>(std::min<uint32_t>(stored, 255));
}

Colour ReadColour(const TemplateFile& file, const char* section, const std::string& r,
                  const std::string& g, const std::string& b) {
  return Colour{Component(file.Int(section, r), 255), Component(file.Int(section, g), 255),
                Component(file.Int(section, b), 255)};
}

std::string ReadPicture(const TemplateFile& file, const char* section, const std::string& key,
                        const std::string& folder) {
  const auto name = file.Text(section, key);
  if (!name || name->empty()) return std::string();
  return ResolveIn(folder, *name);
}

Title ReadTitle(const TemplateFile& file, const char* section, const TitleKeys& keys) {
  Title title;
  title.text = file.Text(section, keys.text).value_or(std::string());
  if (title.text.empty()) return title;
  const auto x = file.Int(section, keys.x);
  const auto y = file.Int(section, keys.y);
  if (x && y) {
    title.hasPosition = true;
    title.x = *x;
    title.y = *y;
  }
  title.fontName = file.Text(section, keys.font).value_or(std::string());
  // The size is stored unsigned; 0 and absurd values fall back to something drawable.
  if (const auto size = file.Int(section, keys.size)) {
    const auto stored = static_cast<uint32_t>(*size);
    if (stored > 0) title.sizePx = static_cast<int>(std::min<uint32_t>(stored, kMaxTitleSizePx));
  }
  title.italic = file.Flag(section, keys.italic);
  title.bold = file.Flag(section, keys.bold);
  title.underline = file.Flag(section, keys.underline);
  title.colour = ReadColour(file, section, keys.red, keys.green, keys.blue);
  return title;
}

// The button under `keys`, when all four edges are in the section.
std::optional<Button> ReadButton(const TemplateFile& file, const char* section,
                                 const ButtonKeys& keys, const std::string& folder) {
  const auto left = file.Int(section, keys.left);
  const auto right = file.Int(section, keys.right);
  const auto top = file.Int(section, keys.top);
  const auto bottom = file.Int(section, keys.bottom);
  if (!left || !right || !top || !bottom) return std::nullopt;

  Button button;
  button.rect = Rect{std::min(*left, *right), std::min(*top, *bottom), std::max(*left, *right),
                     std::max(*top, *bottom)};
  button.frameThickness = std::max(0, file.Int(section, keys.thickness).value_or(0));
  button.frameColour = ReadColour(file, section, keys.red, keys.green, keys.blue);
  button.framePicture = ReadPicture(file, section, keys.framePicture, folder);
  button.picture = ReadPicture(file, section, keys.picture, folder);
  return button;
}

// The button indexes of a layout section, found from its keys: the application chooses the
// base of its numbering, so any index with a position key counts. Ascending order.
std::vector<int> ButtonIndexes(const TemplateFile& file, const char* section) {
  static constexpr char kPrefix[] = "ButtonPosition";
  static constexpr const char* kEdges[] = {"_left", "_right", "_top", "_bottom"};
  std::set<int> indexes;
  for (const auto& key : file.Keys(section)) {
    if (strncasecmp(key.c_str(), kPrefix, sizeof kPrefix - 1) != 0) continue;
    const char* number = key.c_str() + sizeof kPrefix - 1;
    char* end = nullptr;
    const long index = std::strtol(number, &end, 10);
    if (end == number || !(*number == '-' || (*number >= '0' && *number <= '9'))) continue;
    // The key printed the index as a signed 32-bit value.
    if (index < INT32_MIN || index > INT32_MAX) continue;
    for (const char* edge : kEdges) {
      if (strcasecmp(end, edge) == 0) indexes.insert(static_cast<int>(index));
    }
  }
  return std::vector<int>(indexes.begin(), indexes.end());
}

}  // namespace

Rect Rect::Intersect(const Rect& o) const {
  return Rect{std::max(left, o.left), std::max(top, o.top), std::min(right, o.right),
              std::min(bottom, o.bottom)};
}

// The sections and keys of the parsed file by name, ASCII case folded: the first section of
// each name, and in it the first entry of each name, as the profile functions find them.
struct TemplateFile::Index {
  explicit Index(std::string_view bytes) : document(bytes) {
    const auto& sections = document.sections();
    for (size_t s = 0; s < sections.size(); ++s) {
      if (sections[s].nameless) continue;
      auto [at, added] = byName.emplace(Folded(sections[s].name), Section{s, {}});
      if (!added) continue;
      for (size_t i = sections[s].firstLine; i < sections[s].endLine; ++i) {
        const platform::IniLine& line = document.lines()[i];
        if (line.isHeader || line.dropped) continue;
        at->second.entries.emplace(Folded(line.name), i);
      }
    }
  }

  std::u16string Folded(platform::UnitRange range) const { return Fold(document.Units(range)); }
  static std::u16string Fold(std::u16string_view units) {
    std::u16string folded(units);
    for (char16_t& u : folded) {
      if (u >= 'A' && u <= 'Z') u = static_cast<char16_t>(u + ('a' - 'A'));
    }
    return folded;
  }

  struct Section {
    size_t index;
    std::unordered_map<std::u16string, size_t> entries;  // folded name -> line
  };
  platform::IniDocument document;
  std::unordered_map<std::u16string, Section> byName;
};

TemplateFile::TemplateFile() = default;
TemplateFile::~TemplateFile() = default;
TemplateFile::TemplateFile(TemplateFile&&) noexcept = default;
TemplateFile& TemplateFile::operator=(TemplateFile&&) noexcept = default;

Status TemplateFile::Load(const std::string& templatePath, TemplateFile* file) {
  const std::string diskPath = TemplateOnDisk(templatePath);
  InputFile input;
  if (const Status s = ReadInputFile(diskPath, "template", kMaxTemplateBytes,
                                     Status::kTemplateUnreadable, &input);
      s != Status::kOk) {
    return s;
  }
  *file = FromBytes(templatePath, input.bytes);
  file->m_device = input.device;
  file->m_inode = input.inode;
  return Status::kOk;
}

TemplateFile TemplateFile::FromBytes(const std::string& templatePath, std::string_view bytes) {
  TemplateFile file;
  file.m_path = templatePath;
  file.m_diskPath = TemplateOnDisk(templatePath);
  file.m_index = std::make_unique<Index>(bytes);
  return file;
}

bool TemplateFile::HasSection(const char* section) const {
  return m_index->byName.count(Index::Fold(m_index->document.ToUnits(section))) > 0;
}

std::vector<std::string> TemplateFile::Keys(const char* section) const {
  std::vector<std::string> keys;
  const auto found = m_index->byName.find(Index::Fold(m_index->document.ToUnits(section)));
  if (found == m_index->byName.end()) return keys;
  // The key list of GetPrivateProfileStringA: entries with a value, not starting with ';'.
  const platform::IniDocument& document = m_index->document;
  const platform::IniSection& s = document.sections()[found->second.index];
  for (size_t i = s.firstLine; i < s.endLine; ++i) {
    const platform::IniLine& line = document.lines()[i];
    if (line.isHeader || line.dropped || !line.hasValue || line.name.empty()) continue;
    if (document.text().units[line.name.begin] == ';') continue;
    keys.push_back(document.Ansi(line.name));
  }
  return keys;
}

std::optional<std::string> TemplateFile::Text(const char* section, const std::string& key) const {
  const platform::IniDocument& document = m_index->document;
  const auto found = m_index->byName.find(Index::Fold(document.ToUnits(section)));
  if (found == m_index->byName.end()) return std::nullopt;
  const auto entry = found->second.entries.find(
      Index::Fold(document.ToUnits(platform::TrimBlanks(key))));
  if (entry == found->second.entries.end()) return std::nullopt;
  const platform::IniLine& line = document.lines()[entry->second];
  if (!line.hasValue) return std::nullopt;
  char buffer[kValueBuffer];
  const uint32_t length =
      platform::CopyValueText(document.Ansi(line.value), buffer, sizeof buffer);
  std::string text(buffer, length);
  if (text == kSentinel) return std::nullopt;
  return text;
}

std::optional<int> TemplateFile::Int(const char* section, const std::string& key) const {
  const auto text = Text(section, key);
  if (!text) return std::nullopt;
  return std::atoi(text->c_str());
}

bool TemplateFile::Flag(const char* section, const std::string& key) const {
  const auto text = Text(section, key);
  return text && (*text == "TRUE" || *text == "true");
}

Status ReadPage(const TemplateFile& file, Page* page) {
  if (!file.HasSection(kBackground)) {
    return Fail(Status::kTemplateUnreadable,
                "template " + file.diskPath() + " has no section [Background]");
  }
  const std::string folder = TemplateFolder(file.path());

  Page result;
  result.height = file.Flag(kBackground, "NTSC") ? 480 : 576;
  result.background = ReadPicture(file, kBackground, "BackgroundBmp", folder);
  result.title = ReadTitle(file, kBackground, PageTitleKeys());

  if (const auto count = file.Int(kBackground, "CurrentNumberOfButton")) {
    const std::string layout = "NumOfButton" + std::to_string(*count);
    for (const int index : ButtonIndexes(file, layout.c_str())) {
      auto button = ReadButton(file, layout.c_str(), NumberedKeys(index), folder);
      if (!button) continue;
      button->title = ReadTitle(file, layout.c_str(), ButtonTitleKeys(index));
      result.buttons.push_back(std::move(*button));
    }
  }
  if (file.Flag(kBackground, "AddPrevButton")) {
    if (auto button = ReadButton(file, "PrevButton", NavigationKeys("ButtonPrev"), folder)) {
      result.buttons.push_back(std::move(*button));
    }
  }
  if (file.Flag(kBackground, "AddNextButton")) {
    if (auto button = ReadButton(file, "NextButton", NavigationKeys("ButtonNext"), folder)) {
      result.buttons.push_back(std::move(*button));
    }
  }
  *page = std::move(result);
  return Status::kOk;
}

}  // namespace tolvex::render
