// CMenuTitle and CMenuButton: in-memory records that keep every value exactly as given.
#include <tolvex/MenuButton.h>
#include <tolvex/MenuTitle.h>

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <type_traits>

namespace tolvex::test {
namespace {

// Values() of a title after Fill(): each of the 8 getters gave 1; flags and position as given.
const char kFilled[] = "8:-12,-34|Chapter One|DejaVu Sans|4294967295|-1|7|2|ffffffff";

int Fill(CMenuTitle& title) {  // the sum of the setters' results
  tagPOINT pos{-12, -34};
  return title.SetPos(&pos) + title.SetTitle("Chapter One") + title.SetFontName("DejaVu Sans") +
         title.SetFontSize(4294967295u) + title.SetFontItalic(-1) + title.SetFontBold(7) +
         title.SetFontUnderline(2) + title.SetFontRGB(0xFFFFFFFFul);
}

std::string Values(CMenuTitle& t) {
  tagPOINT pos{};
  CString text, name;
  unsigned int size = 0;
  int italic = 0, bold = 0, underline = 0;
  unsigned long rgb = 0;
  const int ok = t.GetPos(&pos) + t.GetTitle(&text) + t.GetFontName(&name) + t.GetFontSize(&size) +
                 t.GetFontItalic(&italic) + t.GetFontBold(&bold) +
                 t.GetFontUnderline(&underline) + t.GetFontRGB(&rgb);
  std::ostringstream out;
  out << ok << ':' << pos.x << ',' << pos.y << '|' << text << '|' << name << '|' << size << '|'
      << italic << '|' << bold << '|' << underline << '|' << std::hex << rgb;
  return out.str();
}

TEST(MenuTitle, KeepsValuesAsGivenAndCopiesAreIndependent) {
  CMenuTitle original, assigned;
  EXPECT_EQ(Fill(original), 8);
  CMenuTitle copied(original);
  assigned = original;
  EXPECT_EQ(Values(copied) + Values(assigned), std::string(kFilled) + kFilled);
  copied.SetTitle("Changed");
  assigned.SetFontName("Changed");
  EXPECT_EQ(Values(original), kFilled);
}

TEST(MenuButton, CopiesKeepTheValuesAndShareTheTitleThatGetTitleFills) {
  CMenuTitle source, referenced;
  Fill(source);
  tagRECT rect{300, -40, 100, -200}, copiedRect{};  // left beyond right, top beyond bottom
  {
    CMenuButton button;
    EXPECT_EQ(button.SetTitle(&referenced), 1);  // reports success but sets nothing,
    EXPECT_EQ(button.GetTitle(&source), 0);      // so there is no title to fill
    // No operation sets the reference: place it as the first member of a standard-layout class.
    static_assert(std::is_standard_layout_v<CMenuButton>);
    *reinterpret_cast<CMenuTitle**>(&button) = &referenced;
    button.SetRect(&rect);
    button.SetFileName("one.bmp");
    CMenuButton copied(button), assigned;
    assigned = button;
    CString file;
    assigned.GetFileName(&file);
    assigned.GetRect(&copiedRect);
    EXPECT_EQ(file, "one.bmp");
    EXPECT_EQ(std::memcmp(&copiedRect, &rect, sizeof rect), 0);  // the same edges, in order

    EXPECT_EQ(copied.GetTitle(nullptr), 0);
    EXPECT_EQ(copied.GetTitle(&source) + assigned.GetTitle(&source), 2);  // both fill the title
    EXPECT_EQ(Values(referenced), kFilled);
  }
  EXPECT_EQ(Values(referenced), kFilled);  // destroying the buttons left it intact
}

}  // namespace
}  // namespace tolvex::test
