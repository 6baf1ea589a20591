#include <tolvex/CString.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

TEST(CString, CountedBytesSurviveCopiesAndAssignmentFromItsOwnBuffer) {
  EXPECT_TRUE(CString(static_cast<const char*>(nullptr)).IsEmpty());
  CString withNul("a\0b", 3);
  EXPECT_EQ(3, withNul.GetLength());
  EXPECT_EQ('\0', withNul.GetAt(3)) << "out of range reads as NUL";
  CString moved(std::move(withNul));
  EXPECT_EQ(3, moved.GetLength());
  CString assigned;
  assigned = moved;
  assigned = assigned.GetString() + 1;  // assigning from its own buffer
  EXPECT_EQ(0, assigned.GetLength()) << "text ends at the first NUL";
  assigned = "xyz";
  assigned = assigned.GetString() + 1;
  EXPECT_EQ("yz", assigned);
}

TEST(CString, FormatFollowsPrintf) {
  CString s("old");
  s.Format("NumOfButton%d", -2);
  EXPECT_EQ("NumOfButton-2", s);
  s.Format("%d", static_cast<int>(4294967295u));
  EXPECT_EQ("-1", s);
  const std::string big(5000, 'q');
  s.Format("<%s>", big.c_str());
  EXPECT_EQ(5002, s.GetLength());
}

}  // namespace
