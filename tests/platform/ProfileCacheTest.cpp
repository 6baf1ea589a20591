// Reads reuse the parse of a file only while it is provably unchanged: changes that try to
// fool the stamp (same size, same times, another inode renamed over it) are seen by the next
// read. And reads refuse files over the size limit cleanly (FIFOs and devices: posix/, win32/).
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "platform/ChildProcess.h"
#include "platform/FaultInjection.h"
#include "platform/FileTimes.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

const std::string kFile = "[s]\r\nk=aaaa\r\n";
constexpr int kValueOffset = 7;

class ProfileCache : public ::testing::Test {
 protected:
  void SetUp() override { WriteFile(m_path, kFile); }

  std::string ReadK() {
    char buffer[32];
    GetPrivateProfileStringA("s", "k", "<none>", buffer, sizeof buffer, m_path.c_str());
    return buffer;
  }
  // Lets the file's last change fall well behind the next read, so that the read's stamp is
  // trusted and the following reads rely on it.
  static void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(80)); }
  std::string ModifiedNs() const { return ModifiedTime(m_path); }
  void Poke(const char* text, const std::string& modifiedNs) {
    Child child = SpawnChild("poke", {m_path, std::to_string(kValueOffset), text, modifiedNs});
    ASSERT_TRUE(WaitChild(child).Succeeded());
  }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

// Changes that keep the stamp, each after a trusted read: rewritten in place at the same size
// with the old time or a new one, and again and again right after each other; another file
// renamed over it with the old times; truncated, rewritten with the old time, removed.
TEST_F(ProfileCache, ChangesThatKeepTheStampAreSeen) {
  Settle();
  EXPECT_EQ(ReadK(), "aaaa");
  EXPECT_EQ(ReadK(), "aaaa");
  Poke("bbbb", ModifiedNs());
  EXPECT_EQ(ReadK(), "bbbb");
  Settle();
  EXPECT_EQ(ReadK(), "bbbb");
  Poke("cccc", "-");
  EXPECT_EQ(ReadK(), "cccc");
  for (int round = 0; round < 12; ++round) {
    const std::string value(4, "defg"[round % 4]);
    Poke(value.c_str(), ModifiedNs());
    EXPECT_EQ(ReadK(), value) << "round " << round;
  }

  Settle();
  EXPECT_EQ(ReadK(), "gggg");
  const std::string other = m_dir.File("other.ini");
  WriteFile(other, "[s]\r\nk=zzzz\r\n");
  ASSERT_TRUE(CopyFileTimes(m_path, other));
  std::filesystem::rename(other, m_path);
  EXPECT_EQ(ReadK(), "zzzz");

  Settle();
  EXPECT_EQ(ReadK(), "zzzz");
  const std::string before = ModifiedNs();
  std::filesystem::resize_file(m_path, 0);
  EXPECT_EQ(ReadK(), "<none>");
  WriteFile(m_path, "[s]\r\nk=yyyy\r\n");
  Poke("xxxx", before);
  EXPECT_EQ(ReadK(), "xxxx");
  ASSERT_TRUE(std::filesystem::remove(m_path));
  EXPECT_EQ(ReadK(), "<none>");
}

// A change within one tick of the coarse file clock leaves the same times, so a read taken
// close to the last change proves nothing and the next read goes back to the file (which
// here fails to open); a read taken well after it is trusted, and the next one only stats.
TEST_F(ProfileCache, OnlyAReadWellAfterTheLastChangeIsTrusted) {
  const int64_t changed = LastChangeNs(m_path);
  ASSERT_NE(changed, 0);
  const struct { int64_t after; const char* next; } cases[] = {
      {5'000'000, "<none>"}, {1'000'000'000, "aaaa"}};
  for (const auto& c : cases) {
    platform::SetClockForTests(changed + c.after);
    EXPECT_EQ(ReadK(), "aaaa");
    platform::FailNthCall(platform::Primitive::Open, 1, EIO);
    EXPECT_EQ(ReadK(), c.next) << "read " << c.after << " ns after the last change";
    platform::ClearFaults();
  }
}

// A write changes the cached form of the file: it must start from the file as it is, whatever
// another program did to it in place since, right after a write of its own and long after.
TEST_F(ProfileCache, AWriteKeepsWhatAnotherProgramChangedInPlace) {
  EXPECT_EQ(ReadK(), "aaaa");
  ASSERT_TRUE(WritePrivateProfileStringA("s", "j", "1", m_path.c_str()));
  Poke("bbbb", ModifiedNs());
  ASSERT_TRUE(WritePrivateProfileStringA("s", "j", "2", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "[s]\r\nk=bbbb\r\nj=2\r\n");
  Settle();
  EXPECT_EQ(ReadK(), "bbbb");
  Poke("cccc", ModifiedNs());
  ASSERT_TRUE(WritePrivateProfileStringA("s", "j", "3", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "[s]\r\nk=cccc\r\nj=3\r\n");
  EXPECT_EQ(ReadK(), "cccc");
}

// A file removed and made again by writes: the writes after the first build on the new file,
// not on the form of the one that was removed.
TEST_F(ProfileCache, WritesToAFileMadeAgainStartFromTheNewFile) {
  EXPECT_EQ(ReadK(), "aaaa");
  ASSERT_TRUE(WritePrivateProfileStringA("s", "j", "1", m_path.c_str()));
  ASSERT_EQ(std::remove(m_path.c_str()), 0);
  ASSERT_TRUE(WritePrivateProfileStringA("t", "a", "1", m_path.c_str()));
  ASSERT_TRUE(WritePrivateProfileStringA("t", "b", "2", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "[t]\r\na=1\r\nb=2\r\n");
  EXPECT_EQ(ReadK(), "<none>");
}

TEST(HostileFiles, FileOverTheSizeLimitFailsCleanly) {
  TempDir dir;
  const std::string huge = dir.File("huge.ini"), copy = dir.File("copy.ini");
  WriteFile(huge, "[s]\r\nk=v\r\n");
  std::filesystem::resize_file(huge, 300ll << 20);  // sparse where the file system can
  char buffer[16];
  EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, huge.c_str()), 4u);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "w", huge.c_str()));
  EXPECT_FALSE(CopyFileA(huge.c_str(), copy.c_str(), FALSE));
  EXPECT_EQ(TolvexBeginProfileEdit(huge.c_str()), nullptr);
  EXPECT_EQ(std::filesystem::file_size(huge), 300ull << 20);
  EXPECT_FALSE(FileExists(copy));
}

}  // namespace
}  // namespace tolvex::test
