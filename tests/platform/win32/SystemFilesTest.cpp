// What only Windows has: a write keeps the attributes of the file it replaces and refuses a
// read-only one; a program holding the file open without delete sharing makes a write fail
// with the file as it was, while our own readers never stand in its way; every spelling of a
// name (case, separators) reaches one edit; a bare name lives in the Windows folder; pipes and
// devices are refused. The POSIX tests without a Windows counterpart have none here: Windows
// files have no mode bits, umask or carried-over owner (a replaced file takes its folder's ACL),
// symbolic links need a privilege that Wine does not give, and there is no XDG folder, no
// fork() and no per-process file-size limit.
#include <windows.h>

#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "support/Environment.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

std::string Read(const char* key, const std::string& file) {
  char buffer[64];
  GetPrivateProfileStringA("s", key, "<none>", buffer, sizeof buffer, file.c_str());
  return buffer;
}

size_t EntriesIn(const std::string& folder) {
  size_t count = 0;
  for (auto it = std::filesystem::directory_iterator(folder); it != std::filesystem::directory_iterator(); ++it)
    ++count;
  return count;
}

TEST(AtomicReplace, KeepsHiddenAndArchiveAttributes) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  const DWORD attributes = GetFileAttributesA(path.c_str());
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_ARCHIVE);
  EXPECT_EQ(ReadFile(path), "[s]\r\nk=2\r\n");
}

TEST(AtomicReplace, ReadOnlyAttributeRefusesEveryWriteAndIsKept) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  EXPECT_FALSE(WritePrivateProfileStringA("s", nullptr, nullptr, path.c_str()));
  EXPECT_FALSE(CopyFileA(path.c_str(), path.c_str(), FALSE));
  EXPECT_EQ(TolvexBeginProfileEdit(path.c_str()), nullptr);
  EXPECT_TRUE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(ReadFile(path), "[s]\r\nk=1\r\n");
  EXPECT_EQ(EntriesIn(dir.path()), 1u);
}

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
  EXPECT_EQ(EntriesIn(dir.path()), 1u);
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "3", path.c_str()));
  EXPECT_EQ(Read("k", path), "3");
}

// A handle released while the writer retries lets the write through.
TEST(SharingViolation, WriteGoesThroughOnceTheOtherProgramLetsGo) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  HANDLE held = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  std::thread release([held] {
    Sleep(100);
    CloseHandle(held);
  });
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  release.join();
  EXPECT_EQ(Read("k", path), "2");
  EXPECT_EQ(EntriesIn(dir.path()), 1u);
}

// A reader that shares everything, as ours do, holds a write up only while it reads: with the
// rename of POSIX semantics (Windows 10 on NTFS) not at all, with the classic rename (older
// systems, other file systems, Wine) until it lets go. It reads the bytes it opened either way.
TEST(SharingViolation, ReaderWithFullSharingAtMostDelaysAWrite) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\nk=1\r\n");
  HANDLE reader = CreateFileA(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  char old[64] = {0};
  std::thread readAndRelease([reader, &old] {
    Sleep(100);
    DWORD got = 0;
    ::ReadFile(reader, old, sizeof old - 1, &got, nullptr);
    CloseHandle(reader);
  });
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "2", path.c_str()));
  readAndRelease.join();
  EXPECT_STREQ(old, "[s]\r\nk=1\r\n");
  EXPECT_EQ(Read("k", path), "2");
  EXPECT_EQ(EntriesIn(dir.path()), 1u);
}

TEST(ProfilePath, EverySpellingOfANameReachesTheSameFile) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  WriteFile(path, "[s]\r\n");
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(path.c_str());
  ASSERT_NE(edit, nullptr);
  std::string backslashed = dir.path() + "\\T.INI";
  std::string doubled = dir.path() + "//t.Ini";
  EXPECT_TRUE(WritePrivateProfileStringA("s", "a", "1", backslashed.c_str()));
  EXPECT_TRUE(WritePrivateProfileStringA("s", "b", "2", doubled.c_str()));
  EXPECT_EQ(ReadFile(path), "[s]\r\n");
  EXPECT_TRUE(TolvexCommitProfileEdit(edit));
  TolvexEndProfileEdit(edit);
  EXPECT_EQ(ReadFile(path), "[s]\r\na=1\r\nb=2\r\n");
}

TEST(ProfilePath, BareNameWithoutOwnFolderLivesInTheWindowsFolder) {
  const char* own = std::getenv("TOLVEX_PROFILE_DIR");
  const std::string saved = own ? own : "";
  SetEnvironment("TOLVEX_PROFILE_DIR", nullptr);
  char windows[MAX_PATH + 1];
  ASSERT_GT(GetWindowsDirectoryA(windows, sizeof windows), 0u);
  const std::string name = "tolvex-test-" + std::to_string(std::random_device{}()) + ".ini";
  const std::string inWindows = std::string(windows) + "\\" + name;
  ASSERT_FALSE(FileExists(inWindows));
  if (!WritePrivateProfileStringA("s", "k", "v", name.c_str())) {
    SetEnvironment("TOLVEX_PROFILE_DIR", own ? saved.c_str() : nullptr);
    GTEST_SKIP() << "the Windows folder is not writable by this user";
  }
  EXPECT_EQ(ReadFile(inWindows), "[s]\r\nk=v\r\n");
  EXPECT_EQ(Read("k", name), "v");
  std::filesystem::remove(inWindows);
  SetEnvironment("TOLVEX_PROFILE_DIR", own ? saved.c_str() : nullptr);
}

TEST(HostileFiles, PipesAndDevicesAreRefusedWithoutWaiting) {
  TempDir dir;
  const std::string copy = dir.File("copy.ini");
  const std::string pipeName = "\\\\.\\pipe\\tolvex-test-" + std::to_string(GetCurrentProcessId());
  HANDLE pipe = CreateNamedPipeA(pipeName.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 4, 512, 512,
                                 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  for (const char* path : {pipeName.c_str(), "NUL", "\\\\.\\NUL"}) {
    SCOPED_TRACE(path);
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, path), 4u);
    EXPECT_STREQ(buffer, "dflt");
    EXPECT_FALSE(CopyFileA(path, copy.c_str(), FALSE));
  }
  CloseHandle(pipe);
  EXPECT_FALSE(FileExists(copy));
}

}  // namespace
}  // namespace tolvex::test
