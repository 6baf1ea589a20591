// A test fixture for the accessors of CMenuTemplate: a fresh template file in a temporary
// folder, an object bound to it, raw access to its keys through the profile functions, and a
// way to make the nth coming change of a file fail.
#ifndef TOLVEX_TESTS_SUPPORT_TEMPLATEFILE_H
#define TOLVEX_TESTS_SUPPORT_TEMPLATEFILE_H

#include <tolvex/MenuTemplate.h>
#include <tolvex/Profile.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>
#include <vector>

#include "platform/FaultInjection.h"
#include "support/TempDir.h"

namespace tolvex::test {

class TemplateFileTest : public ::testing::Test {
 protected:
  TemplateFileTest() : path(dir.File("menu.ini")), tpl(CString(path.c_str())) {}
  ~TemplateFileTest() override { platform::ClearFaults(); }

  // The value of `key` in `section` as the file holds it, or nullopt when it is missing.
  std::optional<std::string> Key(const char* section, const std::string& key) const {
    std::vector<char> buffer(100000);
    const char* absent = "\x01<absent>";
    GetPrivateProfileStringA(section, key.c_str(), absent, buffer.data(),
                             static_cast<DWORD>(buffer.size()), path.c_str());
    std::string value(buffer.data());
    if (value == absent) return std::nullopt;
    return value;
  }

  void SetKey(const char* section, const std::string& key, const std::string& value) {
    ASSERT_TRUE(WritePrivateProfileStringA(section, key.c_str(), value.c_str(), path.c_str()));
  }

  void RemoveKey(const char* section, const std::string& key) {
    ASSERT_TRUE(WritePrivateProfileStringA(section, key.c_str(), nullptr, path.c_str()));
  }

  std::string Bytes() const { return ReadFile(path); }

  // The nth coming change of a file (1 = the next) fails as on a full disk.
  static void FailNthWrite(int nth) {
    platform::FailNthCall(platform::Primitive::Rename, nth, ENOSPC);
  }

  TempDir dir;
  std::string path;
  CMenuTemplate tpl;
};

// A template whose current button count selects the layout "NumOfButton<count>".
class ButtonTemplateTest : public TemplateFileTest {
 protected:
  void SetUp() override { ASSERT_EQ(1, tpl.SetCurrentNumOfButtons(3)); }
};

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_TEMPLATEFILE_H
