// Runs every golden case of tests/data/profile against the profile functions.
#include <gtest/gtest.h>
#include <tolvex/Profile.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/CaseFile.h"
#include "support/TempDir.h"

namespace tolvex::test {
namespace {

const char* Arg(const std::optional<std::string>& arg) { return arg ? arg->c_str() : nullptr; }

class GoldenCase : public ::testing::TestWithParam<ProfileCase> {};

TEST_P(GoldenCase, MatchesWindows) {
  const ProfileCase& c = GetParam();
  SCOPED_TRACE(c.source);
  TempDir dir;
  const std::string path = dir.File("case.ini");
  if (c.before) WriteFile(path, *c.before);

  for (const ProfileCall& call : c.calls) {
    ASSERT_FALSE(call.args.empty());
    const std::string verb = call.args[0].value_or("");
    if (verb == "get") {
      ASSERT_EQ(call.args.size(), 5u);
      const DWORD size = static_cast<DWORD>(std::stoul(*call.args[4]));
      std::vector<char> buffer(size + 8, '\xCC');
      DWORD got = GetPrivateProfileStringA(Arg(call.args[1]), Arg(call.args[2]),
                                           Arg(call.args[3]), buffer.data(), size, path.c_str());
      size_t bar = call.expected.find('|');
      std::string bytes = bar == std::string::npos ? "" : call.expected.substr(bar + 1);
      EXPECT_EQ(std::to_string(got), call.expected.substr(0, bar));
      EXPECT_EQ(std::string(buffer.data(), bytes.size()), bytes);
      EXPECT_EQ(buffer[bytes.size()], '\xCC') << "written past the expected bytes";
    } else if (verb == "write") {
      ASSERT_EQ(call.args.size(), 4u);
      BOOL got = WritePrivateProfileStringA(Arg(call.args[1]), Arg(call.args[2]),
                                            Arg(call.args[3]), path.c_str());
      EXPECT_EQ(std::to_string(got), call.expected);
    } else {
      FAIL() << "unknown call " << verb;
    }
  }
  std::optional<std::string> after = c.after ? *c.after : c.before;
  EXPECT_EQ(FileExists(path), after.has_value());
  if (after) {
    EXPECT_EQ(ReadFile(path), *after);
  }
}

INSTANTIATE_TEST_SUITE_P(Profile, GoldenCase,
                         ::testing::ValuesIn(LoadCases(TOLVEX_TEST_DATA_DIR "/profile")),
                         [](const ::testing::TestParamInfo<ProfileCase>& info) {
                           return info.param.name;
                         });

}  // namespace
}  // namespace tolvex::test
