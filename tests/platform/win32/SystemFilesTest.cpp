// What only Windows has: a program holding the file open without delete sharing makes a write
// fail with the file as it was; a bare name lives in the Windows folder. The POSIX tests
// without a Windows counterpart have none here: Windows files have no mode bits, umask or
// carried-over owner (a replaced file takes its folder's ACL), symbolic links need a privilege
// that Wine does not give, and there is no XDG folder, no fork() and no per-process file-size
// limit. It also gives the shared tests their Windows files: the hidden and archive
// attributes, a named pipe and NUL.
#include <windows.h>

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <filesystem>
#include <iterator>
#include <random>
#include <string>

#include "platform/ProfileKey.h"
#include "platform/SystemFiles.h"
#include "support/Environment.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

// Another program's handle without FILE_SHARE_DELETE blocks the rename for as long as it is
// open: the write fails (after its retries) and leaves the file and the folder as they were.
TEST(SharingViolation, FileHeldWithoutDeleteSharingFailsTheWriteCleanly) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  HANDLE held = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  CloseHandle(held);
  EXPECT_EQ(ReadFile(path), "[s]\r\nk=1\r\n");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "3", path.c_str()));
  EXPECT_EQ(ReadKey(path, "k"), "3");
}

TEST(ProfilePath, BareNameWithoutOwnFolderLivesInTheWindowsFolder) {
  ScopedEnvironment own("TOLVEX_PROFILE_DIR", nullptr);
  char windows[MAX_PATH + 1];
  ASSERT_GT(GetWindowsDirectoryA(windows, sizeof windows), 0u);
  const std::string name = "tolvex-test-" + std::to_string(std::random_device{}()) + ".ini";
  const std::string inWindows = std::string(windows) + "\\" + name;
  ASSERT_FALSE(FileExists(inWindows));
  if (!WritePrivateProfileStringA("s", "k", "v", name.c_str()))
    GTEST_SKIP() << "the Windows folder is not writable by this user";
  EXPECT_EQ(ReadFile(inWindows), "[s]\r\nk=v\r\n");
  EXPECT_EQ(ReadKey(name, "k"), "v");
  std::filesystem::remove(inWindows);
}

}  // namespace

constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE;
void MarkToKeep(const std::string& path) { EXPECT_TRUE(SetFileAttributesA(path.c_str(), kKept)); }
bool StillMarked(const std::string& path) {
  return (GetFileAttributesA(path.c_str()) & kKept) == kKept;
}

std::vector<std::string> SpecialFiles(const std::string&) {
  const std::string pipe = "\\\\.\\pipe\\tolvex-test-" + std::to_string(GetCurrentProcessId());
  EXPECT_NE(CreateNamedPipeA(pipe.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 4, 512, 512, 0,
                             nullptr), INVALID_HANDLE_VALUE);
  return {pipe, "NUL", "\\\\.\\NUL"};
}

}  // namespace tolvex::test
