// Reads a template file into the page model, through the profile functions only. Decides what
// a missing or odd value means for drawing (see the defaults below); loads no picture and
// draws nothing. Reentrant: every call reads the file afresh and keeps nothing.
#ifndef TOLVEX_RENDERER_TEMPLATEREADER_H
#define TOLVEX_RENDERER_TEMPLATEREADER_H

#include <optional>
#include <string>
#include <vector>

#include "renderer/Page.h"
#include "renderer/Status.h"

namespace tolvex::render {

// One template file seen through GetPrivateProfileStringA, with the library's sentinel rule:
// a value that reads as "default" counts as missing.
class TemplateFile {
 public:
  explicit TemplateFile(std::string path) : m_path(std::move(path)) {}

  const std::string& path() const { return m_path; }
  bool HasSection(const char* section) const;
  std::vector<std::string> Keys(const char* section) const;
  std::optional<std::string> Text(const char* section, const std::string& key) const;
  // atoi of the text, as the library reads integer text.
  std::optional<int> Int(const char* section, const std::string& key) const;
  // 1 only for "TRUE" and "true"; a missing key is false.
  bool Flag(const char* section, const std::string& key) const;

 private:
  std::string ReadList(const char* section) const;

  std::string m_path;
};

// Fills `page` from the template at `templatePath`. Picture names come back as full paths
// (relative ones taken from the template's folder). Fails only when the template cannot be
// read or has no section "Background"; every missing value has a default:
//   - "NTSC" missing: PAL (720x576); no "BackgroundBmp": a black background;
//   - no "CurrentNumberOfButton": no numbered buttons; a button whose four edges are not all
//     there is not on the page; edges given in the wrong order are swapped;
//   - frame thickness missing or negative: 0; colours missing: white, each component clamped to
//     0..255 (read as the unsigned value the template stored, so -1 is 4294967295, clamped 255);
//   - a title without a position is centred on its button (the page, for the page title); a
//     title without a size is kDefaultTitleSizePx pixels; without a font name, the default family.
Status ReadPage(const std::string& templatePath, Page* page);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_TEMPLATEREADER_H
