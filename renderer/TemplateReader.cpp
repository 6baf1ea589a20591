// Reads a template file into the page model, once, through the profile functions' own engine
// (their indexed form) and the accessors' own key tables, and decides what missing or odd
// values mean for drawing.
#include "renderer/TemplateReader.h"

#include <tolvex/Profile.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <set>

#include "keys/ButtonKeys.h"
#include "keys/NavButtonKeys.h"
#include "keys/PageKeys.h"
#include "platform/IndexedIni.h"
#include "platform/Os.h"
#include "renderer/Failure.h"
#include "renderer/InputFile.h"
#include "renderer/Paths.h"

namespace tolvex::render {
namespace {

// The application reads file names with 1000 bytes; we read every value that way.
constexpr uint32_t kValueBuffer = kLongRead;

// The template as the calling thread's open edit of it holds it, so that a page rendered inside
// an edit shows what the edit staged; false when the thread edits no such file.
bool ReadEditedTemplate(const std::string& templatePath, std::string* bytes) {
  const TolvexTakeBytes take = [](void* to, const char* piece, size_t size) {
    static_cast<std::string*>(to)->append(piece, size);
  };
  bytes->clear();
  return TolvexReadProfileEdit(templatePath.c_str(), take, bytes) != FALSE;
}

// The name of a key of the accessors' tables, with its placeholder filled.
std::string KeyOf(const char* pattern, std::string_view fill = {}) {
  const KeyParts parts = FillKeyPattern(pattern, fill);
  std::string name;
  name.reserve(parts.size());
  return name.append(parts.head).append(parts.fill).append(parts.tail);
}

// Key names of one button: the numbered ones put the index into a pattern, the previous and
// next buttons their "Prev" or "Next", each in its own section.
struct ButtonKeys {
  std::string left, right, top, bottom;
  std::string thickness, red, green, blue;
  std::string framePicture, picture;
};

// The keys of one button, from the families of its kind.
ButtonKeys ButtonKeysOf(const KeyFamily<4>& position, const KeyFamily<1>& frameSize,
                        const KeyFamily<3>& frameRGB, const KeyFamily<1>& frameBmp,
                        const KeyFamily<1>& bmp, std::string_view fill) {
  return ButtonKeys{KeyOf(position.keys[0], fill),  KeyOf(position.keys[1], fill),
                    KeyOf(position.keys[2], fill),  KeyOf(position.keys[3], fill),
                    KeyOf(frameSize.keys[0], fill), KeyOf(frameRGB.keys[0], fill),
                    KeyOf(frameRGB.keys[1], fill),  KeyOf(frameRGB.keys[2], fill),
                    KeyOf(frameBmp.keys[0], fill),  KeyOf(bmp.keys[0], fill)};
}
ButtonKeys NumberedButtonKeys(int index) {
  using namespace buttons;
  return ButtonKeysOf(kPosition, kFrameSize, kFrameRGB, kFrameBmp, kBmp, std::to_string(index));
}
ButtonKeys NavButtonKeys(const navbuttons::NavButtonPlace& place) {
  using namespace navbuttons;
  return ButtonKeysOf(kPosition, kFrameSize, kFrameRGB, kFrameBmp, kBmp, place.fill);
}

// Key names of one title; the page title's keys have no index.
struct TitleKeys {
  std::string text, x, y, font, size, italic, bold, underline, red, green, blue;
};

TitleKeys TitleKeysOf(const KeyFamily<1>& title, const KeyFamily<2>& position,
                      const KeyFamily<1>& fontName, const KeyFamily<1>& fontSize,
                      const KeyFamily<3>& fontStyle, const KeyFamily<3>& fontRGB,
                      std::string_view fill) {
  return TitleKeys{KeyOf(title.keys[0], fill),     KeyOf(position.keys[0], fill),
                   KeyOf(position.keys[1], fill),  KeyOf(fontName.keys[0], fill),
                   KeyOf(fontSize.keys[0], fill),  KeyOf(fontStyle.keys[0], fill),
                   KeyOf(fontStyle.keys[1], fill), KeyOf(fontStyle.keys[2], fill),
                   KeyOf(fontRGB.keys[0], fill),   KeyOf(fontRGB.keys[1], fill),
                   KeyOf(fontRGB.keys[2], fill)};
}
TitleKeys PageTitleKeys() {
  using namespace background;
  return TitleKeysOf(kTitle, kTitlePosition, kTitleFontName, kTitleFontSize, kTitleFontStyle,
                     kTitleFontRGB, {});
}
TitleKeys ButtonTitleKeys(int index) {
  using namespace buttons;
  return TitleKeysOf(kTitle, kTitlePosition, kTitleFontName, kTitleFontSize, kTitleFontStyle,
                     kTitleFontRGB, std::to_string(index));
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

// Whether the first `count` characters of `a` and `b` are equal, ASCII letters compared
// without case, as key names are; a shorter string ends the comparison (both must end).
bool SameName(const char* a, const char* b, size_t count = SIZE_MAX) {
  for (size_t i = 0; i < count; ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (lower(a[i]) != lower(b[i])) return false;
    if (a[i] == '\0') return true;
  }
  return true;
}

// The button indexes of a layout section, found from its keys: the application chooses the
// base of its numbering, so any index with a position key counts. Ascending order.
std::vector<int> ButtonIndexes(const TemplateFile& file, const char* section) {
  const KeyParts first = FillKeyPattern(buttons::kPosition.keys[0], "");
  const std::string prefix(first.head);
  std::set<int> indexes;
  for (const auto& key : file.Keys(section)) {
    if (!SameName(key.c_str(), prefix.c_str(), prefix.size())) continue;
    const char* number = key.c_str() + prefix.size();
    char* end = nullptr;
    const long index = std::strtol(number, &end, 10);
    if (end == number || !(*number == '-' || (*number >= '0' && *number <= '9'))) continue;
    // The key printed the index as a signed 32-bit value.
    if (index < INT32_MIN || index > INT32_MAX) continue;
    for (const char* edge : buttons::kPosition.keys) {
      if (SameName(end, std::string(FillKeyPattern(edge, "").tail).c_str()))
        indexes.insert(static_cast<int>(index));
    }
  }
  return std::vector<int>(indexes.begin(), indexes.end());
}

}  // namespace

Rect Rect::Intersect(const Rect& o) const {
  return Rect{std::max(left, o.left), std::max(top, o.top), std::min(right, o.right),
              std::min(bottom, o.bottom)};
}

// The template in the profile functions' own indexed form: every lookup is a hash lookup.
struct TemplateFile::Index {
  explicit Index(std::string_view bytes) : ini(bytes) {}
  platform::IndexedIni ini;
};

TemplateFile::TemplateFile() = default;
TemplateFile::~TemplateFile() = default;
TemplateFile::TemplateFile(TemplateFile&&) noexcept = default;
TemplateFile& TemplateFile::operator=(TemplateFile&&) noexcept = default;

Status TemplateFile::Load(const std::string& templatePath, TemplateFile* file) {
  const std::string diskPath = TemplateOnDisk(templatePath);
  InputFile input;
  if (ReadEditedTemplate(templatePath, &input.bytes)) {
    if (input.bytes.size() > kMaxTemplateBytes) {
      return Fail(Status::kTemplateUnreadable,
                  "cannot read template " + diskPath + ": larger than " +
                      std::to_string(kMaxTemplateBytes >> 20) + " MB");
    }
    // The file on disk, if the edit has made it yet, is still the one outputs must not be.
    platform::os::FileStamp stamp;
    if (platform::os::StampFile(diskPath, &stamp).ok()) {
      input.device = stamp.device;
      input.inode = stamp.inode;
    }
  } else if (const Status s = ReadInputFile(diskPath, "template", kMaxTemplateBytes,
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
  return m_index->ini.HasSection(section);
}

std::vector<std::string> TemplateFile::Keys(const char* section) const {
  // The key list of GetPrivateProfileStringA: entries with a value, not starting with ';'.
  std::vector<std::string> keys;
  const std::string list = m_index->ini.KeyNames(section);
  for (size_t at = 0; at < list.size();) {
    const size_t end = list.find('\0', at);
    if (end > at) keys.push_back(list.substr(at, end - at));
    at = end + 1;
  }
  return keys;
}

std::optional<std::string> TemplateFile::Text(const char* section, const std::string& key) const {
  char buffer[kValueBuffer];
  const uint32_t length =
      m_index->ini.Read(section, key.c_str(), kMissingValue, buffer, sizeof buffer);
  std::string text(buffer, length);
  if (text == kMissingValue) return std::nullopt;
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
  using background::kSection;
  if (!file.HasSection(kSection)) {
    return Fail(Status::kTemplateUnreadable,
                "template " + file.diskPath() + " has no section [" + kSection + "]");
  }
  const std::string folder = TemplateFolder(file.path());

  Page result;
  result.height = file.Flag(kSection, background::kTemplateMode.keys[0]) ? 480 : 576;
  result.background = ReadPicture(file, kSection, background::kBackgroundBmp.keys[0], folder);
  result.title = ReadTitle(file, kSection, PageTitleKeys());

  if (const auto count = file.Int(kSection, background::kCurrentButtons.keys[0])) {
    const std::string layout = buttons::kLayoutPrefix + std::to_string(*count);
    for (const int index : ButtonIndexes(file, layout.c_str())) {
      auto button = ReadButton(file, layout.c_str(), NumberedButtonKeys(index), folder);
      if (!button) continue;
      button->title = ReadTitle(file, layout.c_str(), ButtonTitleKeys(index));
      result.buttons.push_back(std::move(*button));
    }
  }
  const struct {
    const KeyFamily<1>& shown;
    const navbuttons::NavButtonPlace& place;
    ButtonRole role;
  } navigation[] = {{background::kAddPrev, navbuttons::kPrevious, ButtonRole::kPrevious},
                    {background::kAddNext, navbuttons::kNext, ButtonRole::kNext}};
  for (const auto& nav : navigation) {
    if (!file.Flag(kSection, nav.shown.keys[0])) continue;
    if (auto button = ReadButton(file, nav.place.section, NavButtonKeys(nav.place), folder)) {
      button->role = nav.role;
      result.buttons.push_back(std::move(*button));
    }
  }
  *page = std::move(result);
  return Status::kOk;
}

}  // namespace tolvex::render
