// Writers of one file in several processes and threads lose no update.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/ChildProcess.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

constexpr int kWriters = 4;
constexpr int kKeysEach = 40;

void ExpectEveryKey(const std::string& path) {
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < kKeysEach; ++i) {
      std::string key = "w" + std::to_string(writer) + "_" + std::to_string(i);
      char buffer[32];
      GetPrivateProfileStringA("s", key.c_str(), "lost", buffer, sizeof buffer, path.c_str());
      EXPECT_EQ(std::string(buffer), key);
    }
  }
}

TEST(Concurrency, WritersInSeveralProcessesLoseNoKey) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  std::vector<Child> children;
  for (int writer = 0; writer < kWriters; ++writer)
    children.push_back(SpawnChild(
        "writer", {path, "w" + std::to_string(writer) + "_", std::to_string(kKeysEach)}));
  for (Child child : children) {
    ChildEnd end = WaitChild(child);
    EXPECT_TRUE(end.Succeeded()) << "exit code " << end.code;
  }
  ExpectEveryKey(path);
}

TEST(Concurrency, WritersInSeveralThreadsLoseNoKey) {
  TempDir dir;
  const std::string path = dir.File("t.ini");
  std::vector<std::thread> threads;
  for (int writer = 0; writer < kWriters; ++writer) {
    threads.emplace_back([&path, writer] {
      for (int i = 0; i < kKeysEach; ++i) {
        std::string key = "w" + std::to_string(writer) + "_" + std::to_string(i);
        EXPECT_TRUE(WritePrivateProfileStringA("s", key.c_str(), key.c_str(), path.c_str()));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  ExpectEveryKey(path);
}

}  // namespace
}  // namespace tolvex::test
