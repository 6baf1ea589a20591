// Failed writes return FALSE and leave the file byte for byte as it was, with nothing beside
// it: injected OS errors, read-only files (for root too) and bad paths.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>

#include "platform/FaultInjection.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

using platform::Primitive;

const std::string kOriginal = "; keep\r\n[s]\r\nk=1\r\n\r\n";

class ProfileFailure : public ::testing::Test {
 protected:
  void SetUp() override { WriteFile(m_path, kOriginal); }
  void TearDown() override { platform::ClearFaults(); }

  // The file as it was, and nothing beside it.
  void ExpectUntouched() const {
    EXPECT_EQ(ReadFile(m_path), kOriginal);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_dir.path()), {}), 1);
  }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

// A failed primitive fails the write and the file stays as it was. An edit's commit replaces
// the file the same way; a failed lock keeps an edit from beginning.
TEST_F(ProfileFailure, FailedPrimitiveLeavesFileUnchanged) {
  const struct {
    Primitive primitive;
    int error;
  } faults[] = {{Primitive::Open, EIO},  {Primitive::Read, EIO},    {Primitive::Write, ENOSPC},
                {Primitive::Sync, EIO},  {Primitive::Rename, EIO},  {Primitive::Lock, ENOLCK}};
  for (const auto& fault : faults) {
    SCOPED_TRACE(static_cast<int>(fault.primitive));
    platform::FailNthCall(fault.primitive, 1, fault.error);
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
    ExpectUntouched();
    platform::ClearFaults();
  }
  platform::FailNthCall(Primitive::Lock, 1, ENOLCK);
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(m_path.c_str());
  EXPECT_FALSE(TolvexProfileEditIsOpen(edit));
  TolvexEndProfileEdit(edit);
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "; keep\r\n[s]\r\nk=2\r\n\r\n");
}

TEST_F(ProfileFailure, FailedCreationLeavesNoFile) {
  const std::string fresh = m_dir.File("new.ini");
  platform::FailNthCall(Primitive::Write, 1, ENOSPC);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", fresh.c_str()));
  ExpectUntouched();
}

// Holds as root too, whom the permission bits alone would not stop.
TEST_F(ProfileFailure, FileWithoutWriteBitsIsReadOnlyForEveryone) {
  MakeReadOnly(m_path);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "1", m_path.c_str()));  // even unchanged
  EXPECT_FALSE(WritePrivateProfileStringA("s", nullptr, nullptr, m_path.c_str()));
  ExpectUntouched();
  EXPECT_TRUE(IsReadOnly(m_path));
}

TEST_F(ProfileFailure, BadPathsFailAndReadTheDefault) {
  const std::string missingFolder = m_dir.File("no/such/t.ini");
  for (const char* path : {"", missingFolder.c_str(), m_dir.path().c_str()}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", path));
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", nullptr, path));
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("s", "k", "dflt", buffer, sizeof buffer, path), 4u);
    EXPECT_STREQ(buffer, "dflt");
  }
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", nullptr));
  ExpectUntouched();
}

}  // namespace
}  // namespace tolvex::test
