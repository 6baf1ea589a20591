// The renderer reads a template once into its own index; its values and key lists must be what
// the profile functions read from the same file.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "renderer/TemplateReader.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

using render::TemplateFile;

TEST(TemplateReader, ReadsLongValuesAndKeyListsAsTheProfileFunctionsDo) {
  TempDir dir;
  const std::string path = dir.File("menu.ini");
  WriteFile(path, "[Background]\r\nLong=" + std::string(1500, 'x') +
                      "\r\n;Comment=1\r\nNoValue\r\nTitle=first\r\nTITLE=second\r\n");
  TemplateFile file;
  ASSERT_EQ(TemplateFile::Load(path, &file), render::Status::kOk);

  char value[1000];
  GetPrivateProfileStringA("Background", "Long", "", value, sizeof value, path.c_str());
  EXPECT_EQ(file.Text("BACKGROUND", "Long"), std::string(value));
  EXPECT_EQ(file.Text("Background", "Missing"), std::nullopt);

  char list[4096];
  const DWORD used = GetPrivateProfileStringA("Background", nullptr, "", list, sizeof list,
                                              path.c_str());
  std::vector<std::string> keys;
  for (const char* key = list; key < list + used; key += std::strlen(key) + 1) keys.push_back(key);
  EXPECT_EQ(file.Keys("Background"), keys);
}

}  // namespace
}  // namespace tolvex::test
