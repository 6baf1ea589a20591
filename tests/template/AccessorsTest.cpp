// Every accessor pair of CMenuTemplate as one row of a table: where its keys live in the file,
// their names in the order written, their encoding and read buffer. The same cases run over
// every row: the round trip (direct and inside an edit), the failed write, fill-or-nothing and
// the read buffer. The key names are the file format the renderer and Windows share, so they
// are stated here, not taken from the library.
#include <tolvex/MenuTemplate.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "keys/KeyFamily.h"
#include "support/TemplateFile.h"

namespace tolvex::test {
namespace {

using Texts = std::vector<std::string>;
using C = CMenuTemplate;

// The values as the test hands them over: numbers in decimal, texts as they are.
template <typename T>
T Parse(const std::string& text) {
  if constexpr (std::is_same_v<T, CString>) return CString(text.c_str());
  else return static_cast<T>(std::stoll(text));
}
template <typename T>
std::string Show(const T& value) {
  if constexpr (std::is_same_v<T, CString>) return value.GetString();
  else return std::to_string(static_cast<int32_t>(value));  // bit for bit as 32-bit text
}
// What a getter must leave in an out-parameter it does not fill.
template <typename T>
T Untouched() {
  if constexpr (std::is_same_v<T, CString>) return CString("untouched");
  else return static_cast<T>(77777);
}

// One accessor pair over file texts: `at` is the button index or navigation selector.
struct Access {
  std::function<int(C&, unsigned at, const Texts&)> set;
  std::function<int(C&, unsigned at, Texts* got)> get;  // got starts as the untouched values
};

template <typename... A, std::size_t... I>
std::tuple<A...> ParseAll(const Texts& values, std::index_sequence<I...>) {
  return {Parse<A>(values.at(I))...};
}

template <typename... A, typename Set, typename Get>
Access Make(Set set, Get get) {
  return {[set](C& t, unsigned at, const Texts& v) {
            auto args = ParseAll<A...>(v, std::index_sequence_for<A...>{});
            return std::apply([&](A&... x) { return set(t, at, x...); }, args);
          },
          [get](C& t, unsigned at, Texts* got) {
            std::tuple<A...> outs{Untouched<A>()...};
            const int ok = std::apply([&](A&... x) { return get(t, at, &x...); }, outs);
            got->clear();
            std::apply([&](A&... x) { (got->push_back(Show(x)), ...); }, outs);
            return ok;
          }};
}
template <typename... A>
Access Page(int (C::*set)(A...), int (C::*get)(A*...)) {
  return Make<A...>([set](C& t, unsigned, A... x) { return (t.*set)(x...); },
                    [get](C& t, unsigned, A*... x) { return (t.*get)(x...); });
}
template <typename... A>
Access At(int (C::*set)(unsigned, A...), int (C::*get)(unsigned, A*...)) {
  return Make<A...>([set](C& t, unsigned at, A... x) { return (t.*set)(at, x...); },
                    [get](C& t, unsigned at, A*... x) { return (t.*get)(at, x...); });
}
// Rectangles are kept edge by edge in the order left, right, top, bottom.
Access Rect(int (C::*set)(unsigned, tagRECT), int (C::*get)(unsigned, tagRECT*)) {
  return Make<int, int, int, int>(
      [set](C& t, unsigned at, int l, int r, int top, int b) {
        return (t.*set)(at, tagRECT{l, top, r, b});
      },
      [get](C& t, unsigned at, int* l, int* r, int* top, int* b) {
        tagRECT rect{*l, *top, *r, *b};
        const int ok = (t.*get)(at, &rect);
        *l = rect.left, *r = rect.right, *top = rect.top, *b = rect.bottom;
        return ok;
      });
}
template <typename Set, typename Get>
Access Point(Set set, Get get) {
  return Make<int, int>([set](C& t, unsigned at, int x, int y) { return set(t, at, tagPOINT{x, y}); },
                        [get](C& t, unsigned at, int* x, int* y) {
                          tagPOINT pos{*x, *y};
                          const int ok = get(t, at, &pos);
                          *x = pos.x, *y = pos.y;
                          return ok;
                        });
}

enum class Place { kPage, kButton, kNav };
constexpr Encoding kInt = Encoding::Integer, kFlag = Encoding::Flag, kText = Encoding::Text;

struct Family {
  const char* name;
  Place place;
  std::vector<const char*> keys;  // "%d": the button index; "%s": Prev or Next
  Encoding encoding;
  DWORD buffer;
  Access access;
  bool fillsEach = false;  // stores each value as soon as it is read
};

const std::vector<Family>& Families() {
  static const std::vector<Family> families = {
      {"TemplateMode", Place::kPage, {"NTSC"}, kFlag, 80, Page(&C::SetTemplateMode, &C::GetTemplateMode)},
      {"BkBMPFileName", Place::kPage, {"BackgroundBmp"}, kText, 1000, Page(&C::SetBkBMPFileName, &C::GetFileName)},
      {"MusicFileName", Place::kPage, {"BackgroundMusic"}, kText, 1000, Page(&C::SetMusicFileName, &C::GetMusicFileName)},
      {"MaxNumOfButtons", Place::kPage, {"MaximumNumberOfButton"}, kInt, 80, Page(&C::SetMaxNumOfButtons, &C::GetMaxNumOfButtons)},
      {"OutputBMPFile", Place::kPage, {"OutputBmp"}, kText, 1000, Page(&C::SetOutputBMPFile, &C::GetOutputBMPFile)},
      {"OutMaskFile", Place::kPage, {"OutMask"}, kText, 1000, Page(&C::SetOutMaskFile, &C::GetOutMaskFile)},
      {"AddPrevButton", Place::kPage, {"AddPrevButton"}, kFlag, 80, Page(&C::SetAddPrevButton, &C::GetAddPrevButton)},
      {"AddNextButton", Place::kPage, {"AddNextButton"}, kFlag, 80, Page(&C::SetAddNextButton, &C::GetAddNextButton)},
      {"BkTitle", Place::kPage, {"BackgroundTitle"}, kText, 80, Page(&C::SetBkTitle, &C::GetBkTitle)},
      {"BkTitlePosition", Place::kPage, {"BackgroundTitlePosition_x", "BackgroundTitlePosition_y"}, kInt, 80,
       Point([](C& t, unsigned, tagPOINT p) { return t.SetBkTitlePosition(p); },
             [](C& t, unsigned, tagPOINT* p) { return t.GetBkTitlePosition(p); })},
      {"BkTitleFontName", Place::kPage, {"BackgroundTitleFont_Name"}, kText, 1000, Page(&C::SetBkTitleFontName, &C::GetBkTitleFontName)},
      {"BkTitleFontSize", Place::kPage, {"BackgroundTitleFont_Size"}, kInt, 80, Page(&C::SetBkTitleFontSize, &C::GetBkTitleFontSize)},
      {"BkTitleFontStyle", Place::kPage, {"BackgroundTitleFont_Italic", "BackgroundTitleFont_Bold", "BackgroundTitleFont_Underline"},
       kFlag, 80, Page(&C::SetBkTitleFontStyle, &C::GetBkTitleFontStyle)},
      {"BkTitleFontRGB", Place::kPage, {"BackgroundTitleFont_R", "BackgroundTitleFont_G", "BackgroundTitleFont_B"}, kInt, 80,
       Page(&C::SetBkTitleFontRGB, &C::GetBkTitleFontRGB)},

      {"NavBtnPosition", Place::kNav, {"Button%sButtonPosition_left", "Button%sButtonPosition_right",
        "Button%sButtonPosition_top", "Button%sButtonPosition_bottom"}, kInt, 80, Rect(&C::SetNavBtnPosition, &C::GetNavBtnPosition)},
      {"NavInfo", Place::kNav, {"Button%sNavigationInfo_r", "Button%sNavigationInfo_c"}, kInt, 80,
       At(&C::SetNavInfo, &C::GetNavInfo), /*fillsEach=*/true},
      {"NavBtnFrameSize", Place::kNav, {"Button%sFrameThickness"}, kInt, 80, At(&C::SetNavBtnFrameSize, &C::GetNavBtnFrameSize)},
      {"NavBtnFrameRGB", Place::kNav, {"Button%sFrame_R", "Button%sFrame_G", "Button%sFrame_B"}, kInt, 80,
       At(&C::SetNavBtnFrameRGB, &C::GetNavBtnFrameRGB)},
      {"NavBtnFrameBMP", Place::kNav, {"Button%sFrameBmp"}, kText, 1000, At(&C::SetNavBtnFrameBMP, &C::GetNavBtnFrameBMP)},
      {"NavBtnBMPFile", Place::kNav, {"Button%sBmp"}, kText, 1000, At(&C::SetNavBtnBMPFile, &C::GetNavBtnBMPFile)},

      {"BtnPosition", Place::kButton, {"ButtonPosition%d_left", "ButtonPosition%d_right", "ButtonPosition%d_top",
        "ButtonPosition%d_bottom"}, kInt, 80, Rect(&C::SetBtnPosition, &C::GetBtnPosition)},
      {"BtnFrameSize", Place::kButton, {"ButtonFrameThickness%d"}, kInt, 80, At(&C::SetBtnFrameSize, &C::GetBtnFrameSize)},
      {"BtnFrameRGB", Place::kButton, {"ButtonFrame_R%d", "ButtonFrame_G%d", "ButtonFrame_B%d"}, kInt, 80,
       At(&C::SetBtnFrameRGB, &C::GetBtnFrameRGB)},
      {"BtnFrameBMP", Place::kButton, {"ButtonFrameBmp%d"}, kText, 80, At(&C::SetBtnFrameBMP, &C::GetBtnFrameBMP)},
      {"BtnBMP", Place::kButton, {"ButtonBmp%d"}, kText, 80, At(&C::SetBtnBMP, &C::GetBtnBMP)},
      {"BtnNavInfo", Place::kButton, {"ButtonNavigationInfo_r%d", "ButtonNavigationInfo_c%d"}, kInt, 80,
       At(&C::SetBtnNavInfo, &C::GetBtnNavInfo)},
      {"BtnTitle", Place::kButton, {"ButtonTitle%d"}, kText, 80, At(&C::SetBtnTitle, &C::GetBtnTitle)},
      {"BtnTitlePosition", Place::kButton, {"ButtonTitlePosition%d_x", "ButtonTitlePosition%d_y"}, kInt, 80,
       Point([](C& t, unsigned at, tagPOINT p) { return t.SetBtnTitlePosition(at, p); },
             [](C& t, unsigned at, tagPOINT* p) { return t.GetBtnTitlePosition(at, p); })},
      {"BtnTitleFontName", Place::kButton, {"ButtonTitleFont_Name%d"}, kText, 80, At(&C::SetBtnTitleFontName, &C::GetBtnTitleFontName)},
      {"BtnTitleFontSize", Place::kButton, {"ButtonTitleFont_Size%d"}, kInt, 80, At(&C::SetBtnTitleFontSize, &C::GetBtnTitleFontSize)},
      {"BtnTitleFontStyle", Place::kButton, {"ButtonTitleFont_Italic%d", "ButtonTitleFont_Bold%d", "ButtonTitleFont_Underline%d"},
       kFlag, 80, At(&C::SetBtnTitleFontStyle, &C::GetBtnTitleFontStyle)},
      {"BtnTitleFontRGB", Place::kButton, {"ButtonTitleFont_R%d", "ButtonTitleFont_G%d", "ButtonTitleFont_B%d"}, kInt, 80,
       At(&C::SetBtnTitleFontRGB, &C::GetBtnTitleFontRGB)},
  };
  return families;
}

// Where one call of a family goes: the index or selector, the section, the key's fill.
struct Target {
  unsigned at;
  const char* section;
  std::string fill;
};
std::vector<Target> TargetsOf(const Family& f) {
  switch (f.place) {
    case Place::kPage: return {{0, "Background", ""}};
    case Place::kNav: return {{0, "PrevButton", "Prev"}, {1, "NextButton", "Next"}};
    case Place::kButton: break;
  }
  // The layout of the current count 3; the index is printed signed and compared with nothing.
  return {{4, "NumOfButton3", "4"}, {4294967295u, "NumOfButton3", "-1"}};
}
std::string KeyOf(const char* pattern, const std::string& fill) {
  std::string key = pattern;
  const auto at = key.find('%');
  return at == std::string::npos ? key : key.replace(at, 2, fill);
}

// Values unlike each other and unlike the untouched ones: a negative number, one past the
// signed range (stored as its signed value) and a flag of 5 that is written as TRUE.
Texts ValuesOf(const Family& f, const char* tag) {
  static const char* numbers[] = {"-5", "300", "4294967295", "0"};
  static const char* flags[] = {"5", "0", "-1"};
  Texts values;
  for (std::size_t i = 0; i < f.keys.size(); ++i)
    values.push_back(f.encoding == kText ? std::string(tag) + " " + std::to_string(i)
                                         : f.encoding == kFlag ? flags[i] : numbers[i]);
  return values;
}
std::string FileText(Encoding encoding, const std::string& value) {
  if (encoding == kText) return value;
  const auto number = static_cast<int32_t>(std::stoll(value));
  if (encoding == kFlag) return number ? "TRUE" : "FALSE";
  return std::to_string(number);
}
std::string ReadBack(Encoding encoding, const std::string& value) {
  return encoding == kFlag ? (FileText(encoding, value) == "TRUE" ? "1" : "0")
                           : FileText(encoding, value);
}
Texts UntouchedTexts(const Family& f) {
  return Texts(f.keys.size(), f.encoding == kText ? "untouched" : "77777");
}

class Accessors : public ButtonTemplateTest {
 protected:
  void ExpectRoundTrip(const Family& f, const Target& t) {
    const Texts values = ValuesOf(f, f.name);
    ASSERT_EQ(1, f.access.set(tpl, t.at, values));
    Texts expected;
    for (std::size_t i = 0; i < f.keys.size(); ++i) {
      EXPECT_EQ(FileText(f.encoding, values[i]), Key(t.section, KeyOf(f.keys[i], t.fill)))
          << "key " << KeyOf(f.keys[i], t.fill);
      expected.push_back(ReadBack(f.encoding, values[i]));
    }
    Texts got;
    EXPECT_EQ(1, f.access.get(tpl, t.at, &got));
    EXPECT_EQ(expected, got);
  }
};

TEST_F(Accessors, EveryFamilyRoundTripsThroughItsKeys) {
  for (const Family& f : Families())
    for (const Target& t : TargetsOf(f)) {
      SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(t.at));
      ExpectRoundTrip(f, t);
    }
}

TEST_F(Accessors, SettersStopAtTheFirstFailedWrite) {
  for (const Family& f : Families())
    for (const Target& t : TargetsOf(f)) {
      SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(t.at));
      // New values that differ from the old ones in every key.
      const Texts old = ValuesOf(f, "old");
      const Texts now = f.encoding == kText ? ValuesOf(f, "new")
                                            : Texts(f.keys.size(), f.encoding == kFlag ? "0" : "9");
      ASSERT_EQ(1, f.access.set(tpl, t.at, old));
      const std::size_t failing = f.keys.size() > 1 ? 1 : 0;  // the second key, or the only one
      FailNthWrite(static_cast<int>(failing) + 1);
      EXPECT_EQ(0, f.access.set(tpl, t.at, now));
      for (std::size_t i = 0; i < f.keys.size(); ++i)
        EXPECT_EQ(FileText(f.encoding, i < failing ? now[i] : old[i]),
                  Key(t.section, KeyOf(f.keys[i], t.fill)))
            << "key " << KeyOf(f.keys[i], t.fill);
      platform::ClearFaults();
    }
}

// A key that is missing or reads "default" fails the getter, which then leaves every
// out-parameter as it was (GetNavInfo has stored the values read before it).
TEST_F(Accessors, GettersFillEverythingOrNothing) {
  for (const Family& f : Families())
    for (const Target& t : TargetsOf(f))
      for (std::size_t missing = 0; missing < f.keys.size(); ++missing) {
        const std::string key = KeyOf(f.keys[missing], t.fill);
        SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(t.at) + " without " + key);
        const Texts values = ValuesOf(f, f.name);
        ASSERT_EQ(1, f.access.set(tpl, t.at, values));
        if (missing % 2) {
          RemoveKey(t.section, key);
        } else {
          SetKey(t.section, key, kMissingValue);
        }
        Texts expected = UntouchedTexts(f);
        for (std::size_t i = 0; f.fillsEach && i < missing; ++i)
          expected[i] = ReadBack(f.encoding, values[i]);
        Texts got;
        EXPECT_EQ(0, f.access.get(tpl, t.at, &got));
        EXPECT_EQ(expected, got);
      }
}

TEST_F(Accessors, TextsAreWrittenWholeAndReadThroughTheirBuffer) {
  const std::string text = std::string(600, 'a') + std::string(600, 'b');
  for (const Family& f : Families()) {
    if (f.encoding != kText) continue;
    for (const Target& t : TargetsOf(f)) {
      SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(t.at));
      ASSERT_EQ(1, f.access.set(tpl, t.at, {text}));
      EXPECT_EQ(text, Key(t.section, KeyOf(f.keys[0], t.fill)));
      Texts got;
      EXPECT_EQ(1, f.access.get(tpl, t.at, &got));
      EXPECT_EQ(text.substr(0, f.buffer - 1), got.at(0)) << "read with " << f.buffer << " bytes";
    }
  }
}

TEST_F(Accessors, NavigationSelectorsOtherThanZeroAndOneSucceedAndTouchNothing) {
  ASSERT_EQ(1, tpl.SetNavBtnFrameSize(0, 4));
  const std::string before = Bytes();
  for (const Family& f : Families()) {
    if (f.place != Place::kNav) continue;
    for (unsigned selector : {2u, 4294967295u}) {
      SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(selector));
      EXPECT_EQ(1, f.access.set(tpl, selector, ValuesOf(f, "x")));
      Texts got;
      EXPECT_EQ(1, f.access.get(tpl, selector, &got));
      EXPECT_EQ(UntouchedTexts(f), got);
    }
  }
  EXPECT_EQ(before, Bytes());
}

// The encodings, seen through one integer and one flag key: integers read back as atoi reads
// them, flags as 1 only for "TRUE" and "true"; an empty value is a value, "default" none.
TEST_F(Accessors, StoredTextsDecodeAsAtoiAndTheFlagRule) {
  const struct { const char* text; unsigned number; int flag; } cases[] = {
      {"12abc", 12, 0}, {"", 0, 0}, {"-5", 4294967291u, 0}, {"true", 0, 1}, {"True", 0, 0},
      {"TRUE ", 0, 1 /* trailing blanks are trimmed off the line */}};
  for (const auto& c : cases) {
    SetKey("Background", "MaximumNumberOfButton", c.text);
    SetKey("Background", "AddPrevButton", c.text);
    unsigned number = 12345;
    int flag = 42;
    EXPECT_EQ(1, tpl.GetMaxNumOfButtons(&number)) << '"' << c.text << '"';
    EXPECT_EQ(1, tpl.GetAddPrevButton(&flag)) << '"' << c.text << '"';
    EXPECT_EQ(c.number, number) << '"' << c.text << '"';
    EXPECT_EQ(c.flag, flag) << '"' << c.text << '"';
  }
}

// SetBtnNavInfo sends the indexes 0 and 1 beside the previous and next buttons, where
// GetBtnNavInfo, which always reads the layout, does not look.
TEST_F(Accessors, NavInfoOfButtonsZeroAndOneGoesToThePrevAndNextSections) {
  ASSERT_EQ(1, tpl.SetNavInfo(0, 11, 12));
  ASSERT_EQ(1, tpl.SetBtnNavInfo(0, 2, 3));
  ASSERT_EQ(1, tpl.SetBtnNavInfo(1, 4, 5));
  EXPECT_EQ("2", Key("PrevButton", "ButtonNavigationInfo_r0"));
  EXPECT_EQ("3", Key("PrevButton", "ButtonNavigationInfo_c0"));
  EXPECT_EQ("4", Key("NextButton", "ButtonNavigationInfo_r1"));
  EXPECT_EQ("5", Key("NextButton", "ButtonNavigationInfo_c1"));
  EXPECT_EQ(std::nullopt, Key("NumOfButton3", "ButtonNavigationInfo_r1"));
  unsigned r = 99, c = 99;
  EXPECT_EQ(1, tpl.GetNavInfo(0, &r, &c));
  EXPECT_EQ(11u, r) << "the previous button's own pair is untouched";
  EXPECT_EQ(0, tpl.GetBtnNavInfo(1, &r, &c)) << "the getter reads the layout section";
}

TEST_F(Accessors, CountTextNamesTheLayoutAsAtoiReadsIt) {
  const struct { const char* count; const char* section; } cases[] = {
      {"+3", "NumOfButton3"}, {"-2", "NumOfButton-2"}, {"Error", "NumOfButton0"}};
  for (const auto& c : cases) {
    SetKey("Background", "CurrentNumberOfButton", c.count);
    const std::string title = std::string("for:") + c.count;
    ASSERT_EQ(1, tpl.SetBtnTitle(5, title.c_str())) << c.count;
    EXPECT_EQ(title, Key(c.section, "ButtonTitle5")) << c.count;
  }
}

TEST_F(Accessors, MissingCountOrErrorStopsEveryButtonCall) {
  SetKey("NumOfButton0", "ButtonTitle2", "zero");
  for (const char* why : {"error", "no key", "no file"}) {
    if (why == std::string("error")) SetKey("Background", "CurrentNumberOfButton", "error");
    if (why == std::string("no key")) RemoveKey("Background", "CurrentNumberOfButton");
    if (why == std::string("no file")) tpl.SetTemplateFile(dir.File("absent.ini").c_str());
    const std::string before = Bytes();
    EXPECT_EQ(0, tpl.SetBtnNavInfo(0, 1, 2)) << why;
    for (const Family& f : Families()) {
      if (f.place != Place::kButton) continue;
      EXPECT_EQ(0, f.access.set(tpl, 2, ValuesOf(f, "x"))) << f.name << ", " << why;
      Texts got;
      EXPECT_EQ(0, f.access.get(tpl, 2, &got)) << f.name << ", " << why;
      EXPECT_EQ(UntouchedTexts(f), got) << f.name << ", " << why;
    }
    EXPECT_EQ(before, Bytes()) << why;
  }
  EXPECT_FALSE(FileExists(dir.File("absent.ini")));
}

}  // namespace
}  // namespace tolvex::test
