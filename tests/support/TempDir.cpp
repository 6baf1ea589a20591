// Temporary folders and whole-file helpers for the tests.
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace tolvex::test {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "tolvex-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) ADD_FAILURE() << "mkdtemp failed";
  m_path = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  // Restore write permission first so that read-only files made by a test can be removed.
  for (auto& entry : std::filesystem::recursive_directory_iterator(m_path, ignored))
    std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
  std::filesystem::remove_all(m_path, ignored);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return "<missing>";
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
}

bool FileExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

}  // namespace tolvex::test
