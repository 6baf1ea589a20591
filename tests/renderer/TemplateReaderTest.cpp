// The renderer reads a template once into its own index; every value and key list it finds
// must be what the profile functions read from the same file, quirks included.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <string>
#include <vector>

#include "renderer/TemplateReader.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

using render::TemplateFile;

// What GetPrivateProfileStringA reads, as the renderer counts it: "default" means missing.
std::optional<std::string> ProfileText(const std::string& path, const char* section,
                                       const char* key) {
  char buffer[1000];
  GetPrivateProfileStringA(section, key, "default", buffer, sizeof buffer, path.c_str());
  if (std::string(buffer) == "default") return std::nullopt;
  return std::string(buffer);
}

std::vector<std::string> ProfileKeys(const std::string& path, const char* section) {
  std::string list(1 << 16, '\0');
  const DWORD used = GetPrivateProfileStringA(section, nullptr, "", list.data(),
                                              static_cast<DWORD>(list.size()), path.c_str());
  std::vector<std::string> keys;
  for (size_t at = 0; at < used;) {
    const size_t end = list.find('\0', at);
    if (end > at) keys.push_back(list.substr(at, end - at));
    at = end + 1;
  }
  return keys;
}

TEST(TemplateReader, ReadsEveryValueAndKeyListAsTheProfileFunctionsDo) {
  const std::string body =
      "Orphan=before any section\r\n"
      "[background]\r\n"
      "  NTSC =  TRUE  \r\n"
      "Title=first\r\n"
      "TITLE=second\r\n"
      "Quoted=\"in quotes\"\r\n"
      "Half=\"open\r\n"
      "Sentinel=default\r\n"
      "NoValue\r\n"
      ";Comment=1\r\n"
      "Long=" + std::string(1500, 'x') + "\r\n"
      "Cp=caf\xe9\r\n"
      "[ Background ]\r\n"
      "Late=in a second section of the same name\r\n"
      "[NumOfButton3]\n"
      "ButtonPosition-1_left=5\n\n\n"
      "ButtonPosition7_LEFT=7\r" + std::string("Nul=a\0b\n", 8);
  TempDir dir;
  const std::string ansi = dir.File("ansi.ini");
  WriteFile(ansi, std::string(body.data(), body.size()));
  // The same text as UTF-16 LE with its byte order mark.
  std::string utf16 = "\xff\xfe";
  for (const char c : body) utf16 += c == '\xe9' ? std::string("\xe9\0", 2) : std::string{c, '\0'};
  const std::string unicode = dir.File("unicode.ini");
  WriteFile(unicode, utf16);

  const char* sections[] = {"Background", "BACKGROUND", "NumOfButton3", "Missing"};
  const char* keys[] = {"NTSC",   "Title",    "Quoted", "Half",     "Sentinel", "NoValue",
                        ";Comment", "Long",  "Cp",     "Late",     "Orphan",
                        "ButtonPosition-1_left", "buttonposition7_left", "Nul", "Absent"};
  for (const std::string& path : {ansi, unicode}) {
    TemplateFile file;
    ASSERT_EQ(TemplateFile::Load(path, &file), render::Status::kOk);
    for (const char* section : sections) {
      EXPECT_EQ(file.Keys(section), ProfileKeys(path, section)) << path << " " << section;
      for (const char* key : keys) {
        EXPECT_EQ(file.Text(section, key), ProfileText(path, section, key))
            << path << " [" << section << "] " << key;
      }
    }
    EXPECT_TRUE(file.HasSection("BACKGROUND"));
    EXPECT_FALSE(file.HasSection("Missing"));
  }
}

}  // namespace
}  // namespace tolvex::test
