// Reads a template file into the page model: the file is read once per render into the profile
// functions' own indexed form, and its keys are named by the accessors' tables (keys/). Decides what a missing or odd value means for drawing (see
// the defaults below); loads no picture and draws nothing. Reentrant: keeps nothing between
// calls.
#ifndef TOLVEX_RENDERER_TEMPLATEREADER_H
#define TOLVEX_RENDERER_TEMPLATEREADER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "renderer/Page.h"
#include "renderer/Status.h"

namespace tolvex::render {

// One template file, read once into the profile functions' indexed form, with the library's
// sentinel rule: a value that reads as "default" counts
// as missing. Every lookup is a hash lookup, so reading a page costs time in proportion to the
// template's size however many buttons it has.
class TemplateFile {
 public:
  TemplateFile();
  ~TemplateFile();
  TemplateFile(TemplateFile&&) noexcept;
  TemplateFile& operator=(TemplateFile&&) noexcept;

  // Reads the template at `templatePath` (a bare file name lives in the profile folder), at
  // most kMaxTemplateBytes, never blocking on a FIFO or device.
  static Status Load(const std::string& templatePath, TemplateFile* file);
  // A template from bytes already in memory; `templatePath` is where its names are relative to.
  static TemplateFile FromBytes(const std::string& templatePath, std::string_view bytes);

  // The path as the caller gave it, and the file it names.
  const std::string& path() const { return m_path; }
  const std::string& diskPath() const { return m_diskPath; }
  uint64_t device() const { return m_device; }
  uint64_t inode() const { return m_inode; }

  bool HasSection(const char* section) const;
  std::vector<std::string> Keys(const char* section) const;
  // The value as GetPrivateProfileStringA reads it into 1000 bytes, or nothing when it is
  // missing or reads "default".
  std::optional<std::string> Text(const char* section, const std::string& key) const;
  // atoi of the text, as the library reads integer text.
  std::optional<int> Int(const char* section, const std::string& key) const;
  // 1 only for "TRUE" and "true"; a missing key is false.
  bool Flag(const char* section, const std::string& key) const;

 private:
  struct Index;

  std::string m_path;
  std::string m_diskPath;
  uint64_t m_device = 0;
  uint64_t m_inode = 0;
  std::unique_ptr<Index> m_index;
};

// Fills `page` from `file`. Picture names come back as full paths (relative ones taken from the
// template's folder). Fails only when the template has no section "Background"; every missing
// value has a default:
//   - "NTSC" missing: PAL (720x576); no "BackgroundBmp": a black background;
//   - no "CurrentNumberOfButton": no numbered buttons; a button whose four edges are not all
//     there is not on the page; edges given in the wrong order are swapped;
//   - frame thickness missing or negative: 0; colours missing: white, each component clamped to
//     0..255 (read as the unsigned value the template stored, so -1 is 4294967295, clamped 255);
//   - a title without a position is centred on its button (the page, for the page title); a
//     title without a size is kDefaultTitleSizePx pixels; without a font name, the default family.
Status ReadPage(const TemplateFile& file, Page* page);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_TEMPLATEREADER_H
