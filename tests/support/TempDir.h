// Test helpers shared by every test binary: a temporary folder removed with its contents at
// the end of the test, and whole-file read and write.
#ifndef TOLVEX_TESTS_SUPPORT_TEMPDIR_H
#define TOLVEX_TESTS_SUPPORT_TEMPDIR_H

#include <string>

namespace tolvex::test {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return m_path; }
  // The path of `name` inside the folder.
  std::string File(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

// The whole content of `path`, or "<missing>" when it cannot be opened.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);
// Takes every write permission from `path`: the mode's write bits on POSIX, the read-only
// attribute on Windows.
void MakeReadOnly(const std::string& path);
// Whether `path` has no write permission left.
bool IsReadOnly(const std::string& path);

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_TEMPDIR_H
