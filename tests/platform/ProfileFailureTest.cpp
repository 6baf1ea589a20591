// Failed writes return FALSE and leave the file byte for byte as it was, with nothing beside
// it: injected OS errors, read-only files (for root too) and bad paths.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cerrno>
#include <filesystem>
#include <set>
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

  std::set<std::string> Entries() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_dir.path()))
      names.insert(entry.path().filename().string());
    return names;
  }
  void ExpectUntouched() const {
    EXPECT_EQ(ReadFile(m_path), kOriginal);
    EXPECT_EQ(Entries(), std::set<std::string>{"t.ini"});
  }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

// A failed primitive fails the write, or the commit of an edit (a failed lock keeps the edit
// from beginning), and the file stays as it was.
TEST_F(ProfileFailure, FailedPrimitiveLeavesFileUnchangedDirectlyAndInAnEdit) {
  const struct {
    Primitive primitive;
    int error;
  } faults[] = {{Primitive::Open, EIO},  {Primitive::Read, EIO},     {Primitive::Write, ENOSPC},
                {Primitive::Sync, EIO},  {Primitive::Rename, EIO},  {Primitive::Lock, ENOLCK}};
  for (bool inEdit : {false, true})
    for (const auto& fault : faults) {
      if (inEdit && fault.primitive == Primitive::Read) continue;  // a commit reads nothing
      SCOPED_TRACE(std::to_string(static_cast<int>(fault.primitive)) + (inEdit ? " in an edit" : ""));
      if (fault.primitive == Primitive::Lock) platform::FailNthCall(fault.primitive, 1, fault.error);
      TolvexProfileEdit* edit = inEdit ? TolvexBeginProfileEdit(m_path.c_str()) : nullptr;
      const bool began = TolvexProfileEditIsOpen(edit);
      EXPECT_EQ(inEdit && fault.primitive != Primitive::Lock, began) << "only a failed lock stops an edit";
      if (began) {
        EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
        platform::FailNthCall(fault.primitive, 1, fault.error);
        EXPECT_FALSE(TolvexCommitProfileEdit(edit));
        EXPECT_FALSE(TolvexProfileEditIsOpen(edit));
      } else if (!inEdit) {
        if (fault.primitive != Primitive::Lock) platform::FailNthCall(fault.primitive, 1, fault.error);
        EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
      }
      TolvexEndProfileEdit(edit);
      ExpectUntouched();
      platform::ClearFaults();
    }
  EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "2", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "; keep\r\n[s]\r\nk=2\r\n\r\n");
}

// The change of a failed write is not remembered: the writes and reads after it see the file.
TEST_F(ProfileFailure, AFailedWriteLeavesNothingForTheNextCalls) {
  char buffer[16];
  GetPrivateProfileStringA("s", "k", "", buffer, sizeof buffer, m_path.c_str());
  for (Primitive primitive : {Primitive::Write, Primitive::Rename}) {
    platform::FailNthCall(primitive, 1, EIO);
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "lost", m_path.c_str()));
    platform::ClearFaults();
    GetPrivateProfileStringA("s", "k", "", buffer, sizeof buffer, m_path.c_str());
    EXPECT_STREQ(buffer, "1");
  }
  EXPECT_TRUE(WritePrivateProfileStringA("s", "j", "3", m_path.c_str()));
  EXPECT_EQ(ReadFile(m_path), "; keep\r\n[s]\r\nk=1\r\nj=3\r\n\r\n");
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
