// Temporary folders and whole-file helpers for the tests.
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace tolvex::test {

TempDir::TempDir() {
  // A new folder of a random name; create_directory fails on a name that is taken.
  std::random_device seed;
  const std::filesystem::path base = std::filesystem::temp_directory_path();
  for (int attempt = 0; attempt < 100 && m_path.empty(); ++attempt) {
    const std::filesystem::path folder = base / ("tolvex-test-" + std::to_string(seed()));
    std::error_code error;
    if (std::filesystem::create_directory(folder, error)) m_path = folder.string();
  }
  if (m_path.empty()) ADD_FAILURE() << "no temporary folder could be made in " << base;
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

constexpr auto kWritable = std::filesystem::perms::owner_write |
                          std::filesystem::perms::group_write |
                          std::filesystem::perms::others_write;

void MakeReadOnly(const std::string& path) {
  std::filesystem::permissions(path, kWritable, std::filesystem::perm_options::remove);
}

bool IsReadOnly(const std::string& path) {
  return (std::filesystem::status(path).permissions() & kWritable) == std::filesystem::perms::none;
}

}  // namespace tolvex::test
