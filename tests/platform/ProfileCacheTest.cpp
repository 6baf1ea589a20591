// Reads reuse the parse of a file only while it is provably unchanged: changes that try to
// fool the stamp (same size, same times, another inode renamed over it) are seen by the next
// read. And reads refuse files over the size limit cleanly (FIFOs and devices: posix/, win32/).
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/FaultInjection.h"
#include "platform/Os.h"
#include "platform/ProfileKey.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

namespace fs = std::filesystem;

const std::string kFile = "[s]\r\nk=aaaa\r\n";
constexpr int kValueOffset = 7;

class ProfileCache : public ::testing::Test {
 protected:
  void SetUp() override { WriteFile(m_path, kFile); }

  std::string ReadK() const { return ReadKey(m_path, "k"); }
  // Lets the file's last change fall well behind the next read, so that the read's stamp is
  // trusted and the following reads rely on it.
  static void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(80)); }
  fs::file_time_type Modified() const { return fs::last_write_time(m_path); }
  // Overwrites the value in place, as another program would, and gives the file `modified`.
  void Poke(const char* text, fs::file_time_type modified) {
    {
      std::fstream file(m_path, std::ios::in | std::ios::out | std::ios::binary);
      file.seekp(kValueOffset);
      file << text;
    }
    fs::last_write_time(m_path, modified);
  }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

// Changes that keep the stamp, each after a trusted read: rewritten in place at the same size
// with the old time, again and again right after each other; another file renamed over it
// with the old time.
TEST_F(ProfileCache, ChangesThatKeepTheStampAreSeen) {
  Settle();
  EXPECT_EQ(ReadK(), "aaaa");
  EXPECT_EQ(ReadK(), "aaaa");
  for (const char* value : {"bbbb", "cccc", "dddd"}) {
    Poke(value, Modified());
    EXPECT_EQ(ReadK(), value);
  }

  Settle();
  EXPECT_EQ(ReadK(), "dddd");
  const std::string other = m_dir.File("other.ini");
  WriteFile(other, "[s]\r\nk=zzzz\r\n");
  fs::last_write_time(other, Modified());
  fs::rename(other, m_path);
  EXPECT_EQ(ReadK(), "zzzz");
}

// A change within one tick of the coarse file clock leaves the same times, so a read taken
// close to the last change proves nothing and the next read goes back to the file (which
// here fails to open); a read taken well after it is trusted, and the next one only stats.
TEST_F(ProfileCache, OnlyAReadWellAfterTheLastChangeIsTrusted) {
  platform::os::FileStamp stamp;
  ASSERT_TRUE(platform::os::StampFile(m_path, &stamp).ok());
  const int64_t changed = std::max(stamp.modifiedNs, stamp.changedNs);
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

TEST(HostileFiles, FileOverTheSizeLimitFailsCleanly) {
  TempDir dir;
  const std::string huge = dir.File("huge.ini"), copy = dir.File("copy.ini");
  WriteFile(huge, "[s]\r\nk=v\r\n");
  fs::resize_file(huge, 300ll << 20);  // sparse where the file system can
  char buffer[16];
  EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, huge.c_str()), 4u);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "w", huge.c_str()));
  EXPECT_FALSE(CopyFileA(huge.c_str(), copy.c_str(), FALSE));
  EXPECT_EQ(TolvexBeginProfileEdit(huge.c_str()), nullptr);
  EXPECT_EQ(fs::file_size(huge), 300ull << 20);
  EXPECT_FALSE(FileExists(copy));
}

}  // namespace
}  // namespace tolvex::test
