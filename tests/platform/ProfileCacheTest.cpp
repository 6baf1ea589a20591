// Reads reuse the parse of a file only while it is provably unchanged: changes that try to
// fool the stamp (same size, same times, another inode renamed over it) are seen by the next
// read. And reads refuse what is not a template file: FIFOs and devices at once, files over
// the size limit cleanly.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tolvex/Profile.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>

#include "platform/ChildProcess.h"
#include "platform/FaultInjection.h"
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
  std::string ModifiedNs() const {
    struct stat info;
    EXPECT_EQ(stat(m_path.c_str(), &info), 0);
    return std::to_string(static_cast<long long>(info.st_mtim.tv_sec) * 1000000000 +
                          info.st_mtim.tv_nsec);
  }
  void Poke(const char* text, const std::string& modifiedNs) {
    pid_t child = SpawnChild("poke", {m_path, std::to_string(kValueOffset), text, modifiedNs});
    ASSERT_EQ(WaitChild(child), 0);
  }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

TEST_F(ProfileCache, InPlaceRewriteAtTheSameSizeWithTheOldTimeIsSeen) {
  Settle();
  EXPECT_EQ(ReadK(), "aaaa");
  EXPECT_EQ(ReadK(), "aaaa");
  Poke("bbbb", ModifiedNs());
  EXPECT_EQ(ReadK(), "bbbb");
  Settle();
  EXPECT_EQ(ReadK(), "bbbb");
  Poke("cccc", "-");
  EXPECT_EQ(ReadK(), "cccc");
}

// A change within one tick of the coarse file clock leaves the same times, so a read taken
// close to the last change proves nothing and the next read goes back to the file (which
// here fails to open); a read taken well after it is trusted, and the next one only stats.
TEST_F(ProfileCache, OnlyAReadWellAfterTheLastChangeIsTrusted) {
  struct stat info;
  ASSERT_EQ(stat(m_path.c_str(), &info), 0);
  auto ns = [](const timespec& t) { return int64_t{t.tv_sec} * 1000000000 + t.tv_nsec; };
  const int64_t changed = std::max(ns(info.st_mtim), ns(info.st_ctim));
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

TEST_F(ProfileCache, RewritesRightAfterEachOtherAreAllSeen) {
  const char* values[] = {"bbbb", "cccc", "dddd", "eeee"};
  for (int round = 0; round < 12; ++round) {
    const char* value = values[round % 4];
    Poke(value, ModifiedNs());
    EXPECT_EQ(ReadK(), value) << "round " << round;
  }
}

TEST_F(ProfileCache, AnotherFileRenamedOverItIsSeen) {
  Settle();
  EXPECT_EQ(ReadK(), "aaaa");
  const std::string other = m_dir.File("other.ini");
  WriteFile(other, "[s]\r\nk=zzzz\r\n");
  struct stat info;
  ASSERT_EQ(stat(m_path.c_str(), &info), 0);
  struct timespec times[2] = {info.st_atim, info.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, other.c_str(), times, 0), 0);
  ASSERT_EQ(rename(other.c_str(), m_path.c_str()), 0);
  EXPECT_EQ(ReadK(), "zzzz");
}

TEST_F(ProfileCache, TruncatedAndRewrittenWithTheOldTimeIsSeen) {
  Settle();
  EXPECT_EQ(ReadK(), "aaaa");
  const std::string before = ModifiedNs();
  ASSERT_EQ(truncate(m_path.c_str(), 0), 0);
  EXPECT_EQ(ReadK(), "<none>");
  WriteFile(m_path, "[s]\r\nk=yyyy\r\n");
  Poke("xxxx", before);
  EXPECT_EQ(ReadK(), "xxxx");
  ASSERT_EQ(unlink(m_path.c_str()), 0);
  EXPECT_EQ(ReadK(), "<none>");
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

TEST(HostileFiles, FifosAndDevicesAreRefusedWithoutWaiting) {
  TempDir dir;
  const std::string fifo = dir.File("fifo.ini"), copy = dir.File("copy.ini");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0644), 0);
  for (const char* path : {fifo.c_str(), "/dev/zero", "/dev/null"}) {
    SCOPED_TRACE(path);
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, path), 4u);
    EXPECT_STREQ(buffer, "dflt");
    EXPECT_FALSE(CopyFileA(path, copy.c_str(), FALSE));
    EXPECT_EQ(TolvexBeginProfileEdit(path), nullptr);
  }
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", fifo.c_str()));
  EXPECT_FALSE(FileExists(copy));
}

TEST(HostileFiles, FileOverTheSizeLimitFailsCleanly) {
  TempDir dir;
  const std::string huge = dir.File("huge.ini"), copy = dir.File("copy.ini");
  WriteFile(huge, "[s]\r\nk=v\r\n");
  ASSERT_EQ(truncate(huge.c_str(), 300ll << 20), 0);  // sparse: no disk space taken
  char buffer[16];
  EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, huge.c_str()), 4u);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "w", huge.c_str()));
  EXPECT_FALSE(CopyFileA(huge.c_str(), copy.c_str(), FALSE));
  EXPECT_EQ(TolvexBeginProfileEdit(huge.c_str()), nullptr);
  struct stat info;
  ASSERT_EQ(stat(huge.c_str(), &info), 0);
  EXPECT_EQ(info.st_size, 300ll << 20);
  EXPECT_FALSE(FileExists(copy));
}

}  // namespace
}  // namespace tolvex::test
