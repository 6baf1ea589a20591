// Where a profile path leads (profile folder for bare names, current folder otherwise), and
// CopyFileA.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "support/TempDir.h"

namespace tolvex::test {
namespace {

// Sets or clears an environment variable for one test.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : m_name(name) {
    if (const char* old = std::getenv(name)) m_old = old;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { m_old ? setenv(m_name, m_old->c_str(), 1) : unsetenv(m_name); }

 private:
  const char* m_name;
  std::optional<std::string> m_old;
};

std::string Read(const char* app, const char* key, const char* file) {
  char buffer[64];
  GetPrivateProfileStringA(app, key, "missing", buffer, sizeof buffer, file);
  return buffer;
}

TEST(ProfilePath, BareNameLivesInProfileFolderCreatedOnFirstWrite) {
  TempDir dir;
  const std::string folder = dir.File("profiles/tolvex");
  {
    ScopedEnv own("TOLVEX_PROFILE_DIR", folder.c_str());
    EXPECT_EQ(Read("s", "k", "bare.ini"), "missing");
    EXPECT_FALSE(FileExists(folder));
    ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "own", "bare.ini"));
    EXPECT_EQ(ReadFile(folder + "/bare.ini"), "[s]\r\nk=own\r\n");
    EXPECT_EQ(Read("s", "k", "bare.ini"), "own");
    EXPECT_FALSE(FileExists("bare.ini"));
  }
  ScopedEnv noOwn("TOLVEX_PROFILE_DIR", nullptr);
  {
    ScopedEnv xdg("XDG_CONFIG_HOME", dir.File("xdg").c_str());
    ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "xdg", "bare.ini"));
    EXPECT_EQ(Read("s", "k", dir.File("xdg/tolvex/bare.ini").c_str()), "xdg");
  }
  // Without XDG_CONFIG_HOME, or with a relative one (which the base-directory rules ignore),
  // the home folder's.
  ScopedEnv home("HOME", dir.File("home").c_str());
  char* old = getcwd(nullptr, 0);
  ASSERT_EQ(chdir(dir.path().c_str()), 0);  // where a relative folder would lead
  for (const char* xdg : {static_cast<const char*>(nullptr), "relative"}) {
    ScopedEnv ignored("XDG_CONFIG_HOME", xdg);
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", xdg ? xdg : "unset", "bare.ini"));
    EXPECT_EQ(Read("s", "k", dir.File("home/.config/tolvex/bare.ini").c_str()), xdg ? xdg : "unset");
  }
  EXPECT_FALSE(FileExists(dir.File("relative")));
  EXPECT_EQ(chdir(old), 0);
  std::free(old);
}

TEST(ProfilePath, RelativePathWithSeparatorIsFromCurrentFolder) {
  TempDir dir;
  char* old = getcwd(nullptr, 0);
  ASSERT_EQ(chdir(dir.path().c_str()), 0);
  ASSERT_EQ(mkdir("sub", 0755), 0);
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "v", "sub/r.ini"));
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "w", "./r.ini"));
  ASSERT_EQ(chdir(old), 0);
  free(old);
  EXPECT_EQ(ReadFile(dir.File("sub/r.ini")), "[s]\r\nk=v\r\n");
  EXPECT_EQ(ReadFile(dir.File("r.ini")), "[s]\r\nk=w\r\n");
}

TEST(CopyFile, CopiesBytesAndHonoursFailIfExists) {
  TempDir dir;
  const std::string source = dir.File("a.ini"), target = dir.File("b.ini");
  const std::string bytes = std::string("[s]\r\nk=\0x\r\n", 11);
  WriteFile(source, bytes);
  EXPECT_TRUE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_EQ(ReadFile(target), bytes);

  WriteFile(target, "other");
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), TRUE));
  EXPECT_EQ(ReadFile(target), "other");
  EXPECT_TRUE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_EQ(ReadFile(target), bytes);
}

TEST(CopyFile, FailsForMissingSourceReadOnlyTargetAndBadPaths) {
  TempDir dir;
  const std::string source = dir.File("a.ini"), target = dir.File("b.ini");
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_FALSE(FileExists(target));

  WriteFile(source, "[s]\r\n");
  WriteFile(target, "keep");
  ASSERT_EQ(chmod(target.c_str(), 0444), 0);
  EXPECT_FALSE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  EXPECT_EQ(ReadFile(target), "keep");

  EXPECT_FALSE(CopyFileA(source.c_str(), "", FALSE));
  EXPECT_FALSE(CopyFileA(source.c_str(), dir.File("no/b.ini").c_str(), FALSE));
  EXPECT_FALSE(CopyFileA(dir.path().c_str(), dir.File("c.ini").c_str(), FALSE));
}

TEST(CopyFile, CopyOfReadOnlyFileIsReadOnly) {
  TempDir dir;
  const std::string source = dir.File("a.ini"), target = dir.File("b.ini");
  WriteFile(source, "[s]\r\nk=1\r\n");
  ASSERT_EQ(chmod(source.c_str(), 0444), 0);
  ASSERT_TRUE(CopyFileA(source.c_str(), target.c_str(), FALSE));
  struct stat info;
  ASSERT_EQ(stat(target.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0444u);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", target.c_str()));
}

TEST(ProfileRead, SeesAnInPlaceEditOfTheSameSizeAtOnce) {
  TempDir dir;
  const std::string file = dir.File("a.ini");
  WriteFile(file, "[s]\r\nk=1\r\n");
  EXPECT_EQ("1", Read("s", "k", file.c_str()));
  for (char digit = '2'; digit <= '9'; ++digit) {
    WriteFile(file, std::string("[s]\r\nk=") + digit + "\r\n");  // same size, same inode
    EXPECT_EQ(std::string(1, digit), Read("s", "k", file.c_str()));
  }
  WriteFile(dir.File("b.ini"), "[s]\r\nk=9\r\n");
  EXPECT_EQ("9", Read("s", "k", dir.File("b.ini").c_str())) << "same bytes, another file";
  EXPECT_EQ("missing", Read("s", "k", dir.File("none.ini").c_str()));
}

}  // namespace
}  // namespace tolvex::test
