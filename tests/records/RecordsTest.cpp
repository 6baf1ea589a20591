// CMenuButton as one table of fields: each field keeps the value given, leaves the others
// alone, and goes with copies.
#include <tolvex/MenuButton.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tolvex::test {
namespace {

struct Field {
  const char* name;
  std::function<void(CMenuButton&)> set;  // sets a value unlike the default
  std::function<std::string(CMenuButton&)> get;
  const char* value, *initial;
};

std::string Text(long long a, long long b) { return std::to_string(a) + "," + std::to_string(b); }

const std::vector<Field> kFields = {
    {"rect", [](CMenuButton& b) { tagRECT r{300, -40, 100, -200}; b.SetRect(&r); },  // left beyond right
     [](CMenuButton& b) { tagRECT r{}; b.GetRect(&r); return Text(r.left, r.top) + "," + Text(r.right, r.bottom); },
     "300,-40,100,-200", "0,0,0,0"},
    {"frame size", [](CMenuButton& b) { b.SetFrameSize(4294967295u); },
     [](CMenuButton& b) { unsigned v = 0; b.GetFrameSize(&v); return std::to_string(v); }, "4294967295", "0"},
    {"frame rgb", [](CMenuButton& b) { b.SetFrameRGB(0x123456ul); },
     [](CMenuButton& b) { unsigned long v = 0; b.GetFrameRGB(&v); return std::to_string(v); }, "1193046", "0"},
    {"frame file", [](CMenuButton& b) { b.SetFrameFileName("frame.bmp"); },
     [](CMenuButton& b) { CString s; b.GetFrameFileName(&s); return std::string(s.GetString()); }, "frame.bmp", ""},
    {"file", [](CMenuButton& b) { b.SetFileName("one.bmp"); },
     [](CMenuButton& b) { CString s; b.GetFileName(&s); return std::string(s.GetString()); }, "one.bmp", ""},
    {"navigation", [](CMenuButton& b) { tagPOINT p{3, -4}; b.SetNavigationInfo(&p); },
     [](CMenuButton& b) { tagPOINT p{}; b.GetNavigationInfo(&p); return Text(p.x, p.y); }, "3,-4", "0,0"},
};

TEST(Records, EveryButtonFieldKeepsItsValueAloneAndInCopies) {
  for (const Field& field : kFields) {
    CMenuButton record;
    field.set(record);
    for (const Field& other : kFields)
      EXPECT_EQ(&other == &field ? other.value : other.initial, other.get(record))
          << other.name << " after setting " << field.name;
  }
  CMenuButton original, assigned;
  for (const Field& field : kFields) field.set(original);
  CMenuButton copied(original);
  assigned = original;
  for (const Field& field : kFields) {
    EXPECT_EQ(field.value, field.get(copied)) << field.name << " of a copy";
    EXPECT_EQ(field.value, field.get(assigned)) << field.name << " of an assigned record";
  }
}

}  // namespace
}  // namespace tolvex::test
