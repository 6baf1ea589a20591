// Edits: staged changes seen only by the editing thread until the commit, dropped edits,
// nesting, several files, and writers elsewhere waiting for the edit without losing anything.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/FaultInjection.h"
#include "platform/ProfileKey.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

const std::string kOld = "; note\r\n[s]\r\nk=old\r\n";

bool Write(const std::string& path, const char* key, const char* value) {
  return WritePrivateProfileStringA("s", key, value, path.c_str()) != 0;
}

// An edit that ends with the scope, as the C++ class does.
class Edit {
 public:
  explicit Edit(const std::string& file) : m_edit(TolvexBeginProfileEdit(file.c_str())) {}
  ~Edit() { TolvexEndProfileEdit(m_edit); }
  bool IsOpen() const { return TolvexProfileEditIsOpen(m_edit); }
  bool Commit() { return TolvexCommitProfileEdit(m_edit); }

 private:
  TolvexProfileEdit* m_edit;
};

class EditTest : public ::testing::Test {
 protected:
  void SetUp() override { WriteFile(m_path, kOld); }
  void TearDown() override { platform::ClearFaults(); }

  TempDir m_dir;
  std::string m_path = m_dir.File("t.ini");
};

TEST_F(EditTest, StagedChangesStayInTheEditingThreadUntilCommit) {
  Edit edit(m_path);
  ASSERT_TRUE(edit.IsOpen());
  EXPECT_TRUE(Write(m_path, "k", "new"));
  EXPECT_TRUE(Write(m_path, "added", "1"));
  EXPECT_EQ(ReadKey(m_path, "k"), "new");
  EXPECT_EQ(ReadKey(m_path, "added"), "1");

  std::string otherThread;
  std::thread([&] { otherThread = ReadKey(m_path, "k"); }).join();
  EXPECT_EQ(otherThread, "old");
  EXPECT_EQ(ReadFile(m_path), kOld);

  ASSERT_TRUE(edit.Commit());
  EXPECT_FALSE(edit.IsOpen());
  EXPECT_EQ(ReadFile(m_path), "; note\r\n[s]\r\nk=new\r\nadded=1\r\n");
}

TEST_F(EditTest, DroppedEditLeavesFilesAsTheyWereAndAFileIsMadeOnlyWhenWritten) {
  const std::string fresh = m_dir.File("fresh.ini");
  {
    Edit edit(m_path);
    Edit created(fresh);
    ASSERT_TRUE(edit.IsOpen() && created.IsOpen());
    EXPECT_TRUE(Write(m_path, "k", "new"));
    EXPECT_TRUE(WritePrivateProfileStringA("s", nullptr, nullptr, m_path.c_str()));
    EXPECT_TRUE(Write(fresh, "k", "v"));
    EXPECT_EQ(ReadKey(fresh, "k"), "v");
    // A direct write to another file of the folder does not wait for the edits.
    EXPECT_TRUE(Write(m_dir.File("direct.ini"), "k", "v"));
  }
  EXPECT_EQ(ReadFile(m_path), kOld);
  EXPECT_FALSE(FileExists(fresh));
  EXPECT_EQ(ReadKey(m_path, "k"), "old");
  {
    Edit edit(fresh);
    EXPECT_EQ(ReadKey(fresh, "k"), "<none>");
    EXPECT_TRUE(edit.Commit());
  }
  EXPECT_FALSE(FileExists(fresh));
}

TEST_F(EditTest, CommitRefusesReadOnlyFiles) {
  const std::string before = ReadFile(m_path);
  {
    Edit edit(m_path);
    EXPECT_TRUE(Write(m_path, "k", "staged"));
    MakeReadOnly(m_path);  // from now on, for root and administrators too
    EXPECT_FALSE(edit.Commit());
    EXPECT_FALSE(edit.IsOpen());
  }
  EXPECT_EQ(ReadFile(m_path), before);
  EXPECT_FALSE(Edit(m_path).IsOpen());
}

// The nested edits name the file in other spellings, which reach the same edit.
TEST_F(EditTest, NestedEditJoinsTheOpenOneAndDroppingItRestoresItsStart) {
  Edit outer(m_path);
  EXPECT_TRUE(Write(m_path, "a", "1"));
  {
    Edit nested(m_dir.path() + "//t.ini");
    ASSERT_TRUE(nested.IsOpen());
    EXPECT_TRUE(Write(m_path, "b", "2"));
    EXPECT_TRUE(nested.Commit());
  }
  {
    Edit dropped(m_dir.File("./t.ini"));
    EXPECT_TRUE(Write(m_path, "c", "3"));
    EXPECT_TRUE(Write(m_path, "a", "changed"));
  }
  EXPECT_EQ(ReadKey(m_path, "a") + ReadKey(m_path, "b") + ReadKey(m_path, "c"), "12<none>");
  EXPECT_EQ(ReadFile(m_path), kOld);
  EXPECT_TRUE(outer.Commit());
  EXPECT_EQ(ReadFile(m_path), kOld + "a=1\r\nb=2\r\n");
}

// Writers in other processes (direct writes) and threads (each round an edit or direct
// writes) on one file: every key arrives.
TEST(EditConcurrency, ThreadsAndProcessesEditingOneFileLoseNoKey) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  constexpr int kThreads = 3, kProcesses = 2, kRounds = 10;
  std::vector<std::thread> threads;
  for (int p = 0; p < kProcesses; ++p)
    threads.emplace_back([&, p] {
      EXPECT_EQ(RunChild("writer", {path, "p" + std::to_string(p) + "_", "20"}), 0);
    });
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        std::optional<Edit> edit;
        if (round % 2) edit.emplace(path);
        for (int i = 0; i < 5; ++i) {
          std::string key = "t" + std::to_string(t) + "_" + std::to_string(round * 5 + i);
          EXPECT_TRUE(WritePrivateProfileStringA("s", key.c_str(), key.c_str(), path.c_str()));
        }
        if (edit) {
          EXPECT_TRUE(edit->Commit()) << "round " << round;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  auto expectKeys = [&](const char* prefix, int writers, int count) {
    for (int w = 0; w < writers; ++w)
      for (int i = 0; i < count; ++i) {
        std::string key = prefix + std::to_string(w) + "_" + std::to_string(i);
        EXPECT_EQ(ReadKey(path, key.c_str()), key);
      }
  };
  expectKeys("t", kThreads, kRounds * 5);
  expectKeys("p", kProcesses, 20);
}

// Misuse of an edit: left open by a thread that ends, or its file changed by a program that
// takes no lock (a forked child: posix/). A lock left held would make the write at the end
// wait for ever.
using EditMisuse = EditTest;

TEST_F(EditMisuse, AThreadThatEndsWithAnEditOpenReleasesIt) {
  TolvexProfileEdit* edit = nullptr;
  std::thread([&] {
    edit = TolvexBeginProfileEdit(m_path.c_str());
    Write(m_path, "k", "staged");
  }).join();
  ASSERT_NE(edit, nullptr);
  EXPECT_FALSE(TolvexProfileEditIsOpen(edit));
  EXPECT_FALSE(TolvexCommitProfileEdit(edit));
  TolvexEndProfileEdit(edit);
  EXPECT_EQ(ReadFile(m_path), kOld);
  EXPECT_TRUE(Write(m_path, "k", "after"));
}

// Rewritten in place, and made where there was none.
TEST_F(EditMisuse, CommitWritesNothingOverAFileChangedBehindTheEdit) {
  const std::string outside = "[s]\r\nk=outside\r\n";
  for (bool existed : {true, false}) {
    SCOPED_TRACE(existed);
    if (!existed) std::remove(m_path.c_str());
    Edit edit(m_path);
    ASSERT_TRUE(edit.IsOpen());
    ASSERT_TRUE(Write(m_path, "k", "staged"));
    WriteFile(m_path, outside);
    EXPECT_FALSE(edit.Commit());
    EXPECT_EQ(ReadFile(m_path), outside);
  }
}

}  // namespace
}  // namespace tolvex::test
