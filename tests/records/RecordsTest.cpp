// CMenuTitle and CMenuButton: in-memory records that keep every value exactly as given.
#include <tolvex/MenuButton.h>
#include <tolvex/MenuTitle.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>

namespace tolvex::test {
namespace {

std::string Str(const CString& text) {
  return std::string(text.GetString(), static_cast<size_t>(text.GetLength()));
}

std::string TitleText(CMenuTitle& title) {
  CString text;
  title.GetTitle(&text);
  return Str(text);
}

void FillTitle(CMenuTitle& title) {
  tagPOINT pos{-12, INT_MIN};
  ASSERT_EQ(title.SetPos(&pos), 1);
  ASSERT_EQ(title.SetTitle("Chapter One"), 1);
  ASSERT_EQ(title.SetFontName("DejaVu Sans"), 1);
  ASSERT_EQ(title.SetFontSize(4294967295u), 1);
  ASSERT_EQ(title.SetFontItalic(-1), 1);
  ASSERT_EQ(title.SetFontBold(7), 1);
  ASSERT_EQ(title.SetFontUnderline(2), 1);
  ASSERT_EQ(title.SetFontRGB(0xFFFFFFFFul), 1);
}

void ExpectFilledTitle(CMenuTitle& title) {
  tagPOINT pos{};
  CString name;
  unsigned int size = 0;
  int italic = 0, bold = 0, underline = 0;
  unsigned long rgb = 0;
  EXPECT_EQ(title.GetPos(&pos), 1);
  EXPECT_EQ(title.GetFontName(&name), 1);
  EXPECT_EQ(title.GetFontSize(&size), 1);
  EXPECT_EQ(title.GetFontItalic(&italic), 1);
  EXPECT_EQ(title.GetFontBold(&bold), 1);
  EXPECT_EQ(title.GetFontUnderline(&underline), 1);
  EXPECT_EQ(title.GetFontRGB(&rgb), 1);
  EXPECT_EQ(pos.x, -12);
  EXPECT_EQ(pos.y, INT_MIN);
  EXPECT_EQ(TitleText(title), "Chapter One");
  EXPECT_EQ(Str(name), "DejaVu Sans");
  EXPECT_EQ(size, 4294967295u);
  EXPECT_EQ(italic, -1);
  EXPECT_EQ(bold, 7);
  EXPECT_EQ(underline, 2);
  EXPECT_EQ(rgb, 0xFFFFFFFFul);
}

TEST(MenuTitle, KeepsEveryValueAsGiven) {
  CMenuTitle title;
  FillTitle(title);
  ExpectFilledTitle(title);
}

TEST(MenuTitle, CopiesHaveEqualValuesAndTheirOwnStrings) {
  CMenuTitle original;
  FillTitle(original);

  CMenuTitle copied(original);
  CMenuTitle assigned;
  assigned = original;
  ExpectFilledTitle(copied);
  ExpectFilledTitle(assigned);

  copied.SetTitle("Changed");
  assigned.SetFontName("Changed");
  EXPECT_EQ(TitleText(original), "Chapter One");
  ExpectFilledTitle(original);
}

TEST(MenuButton, KeepsEveryValueAsGivenWithoutNormalising) {
  CMenuButton button;
  tagRECT rect{300, -40, 100, -200};  // left beyond right, top beyond bottom
  tagPOINT nav{-3, INT_MAX};
  ASSERT_EQ(button.SetRect(&rect), 1);
  ASSERT_EQ(button.SetFrameSize(4294967295u), 1);
  ASSERT_EQ(button.SetFrameRGB(0x00ABCDEFul), 1);
  ASSERT_EQ(button.SetFrameFileName("frames/ring.bmp"), 1);
  ASSERT_EQ(button.SetFileName("buttons/one.bmp"), 1);
  ASSERT_EQ(button.SetNavigationInfo(&nav), 1);

  tagRECT gotRect{};
  tagPOINT gotNav{};
  unsigned int size = 0;
  unsigned long rgb = 0;
  CString frame, file;
  EXPECT_EQ(button.GetRect(&gotRect), 1);
  EXPECT_EQ(button.GetFrameSize(&size), 1);
  EXPECT_EQ(button.GetFrameRGB(&rgb), 1);
  EXPECT_EQ(button.GetFrameFileName(&frame), 1);
  EXPECT_EQ(button.GetFileName(&file), 1);
  EXPECT_EQ(button.GetNavigationInfo(&gotNav), 1);
  EXPECT_EQ(gotRect.left, 300);
  EXPECT_EQ(gotRect.top, -40);
  EXPECT_EQ(gotRect.right, 100);
  EXPECT_EQ(gotRect.bottom, -200);
  EXPECT_EQ(size, 4294967295u);
  EXPECT_EQ(rgb, 0x00ABCDEFul);
  EXPECT_EQ(Str(frame), "frames/ring.bmp");
  EXPECT_EQ(Str(file), "buttons/one.bmp");
  EXPECT_EQ(gotNav.x, -3);
  EXPECT_EQ(gotNav.y, INT_MAX);
}

TEST(MenuButton, CopiesHaveTheirOwnStrings) {
  CMenuButton original;
  original.SetFileName("one.bmp");
  original.SetFrameFileName("ring.bmp");

  CMenuButton copied(original);
  CMenuButton assigned;
  assigned = original;
  copied.SetFileName("two.bmp");
  assigned.SetFrameFileName("square.bmp");

  CString file, frame;
  original.GetFileName(&file);
  original.GetFrameFileName(&frame);
  EXPECT_EQ(Str(file), "one.bmp");
  EXPECT_EQ(Str(frame), "ring.bmp");
  assigned.GetFileName(&file);
  EXPECT_EQ(Str(file), "one.bmp");
}

TEST(MenuButton, TitleReferenceIsNeverSet) {
  CMenuTitle title;
  FillTitle(title);
  CMenuButton button;

  // No title reference: GetTitle refuses and leaves the passed title alone.
  EXPECT_EQ(button.GetTitle(&title), 0);
  ExpectFilledTitle(title);

  // SetTitle reports success but sets no reference.
  EXPECT_EQ(button.SetTitle(&title), 1);
  EXPECT_EQ(button.GetTitle(&title), 0);
  CMenuButton copied(button);
  EXPECT_EQ(copied.GetTitle(&title), 0);
  ExpectFilledTitle(title);
}

// The reference can only be placed from outside: it is the first member of a standard-layout
// class, so a pointer to the button is a pointer to it.
void PlaceTitleReference(CMenuButton& button, CMenuTitle* title) {
  static_assert(std::is_standard_layout_v<CMenuButton>);
  *reinterpret_cast<CMenuTitle**>(&button) = title;
}

TEST(MenuButton, CopiesShareTheTitleReference) {
  CMenuTitle referenced;
  CMenuTitle source;
  FillTitle(source);
  {
    CMenuButton button;
    PlaceTitleReference(button, &referenced);
    CMenuButton copied(button);

    // GetTitle copies the passed title's values into the referenced title.
    EXPECT_EQ(copied.GetTitle(&source), 1);
    ExpectFilledTitle(referenced);
    EXPECT_EQ(copied.GetTitle(nullptr), 0);

    referenced.SetTitle("Changed");
    EXPECT_EQ(button.GetTitle(&source), 1);
    EXPECT_EQ(TitleText(referenced), "Chapter One");
  }
  // Destroying the buttons left the title they referred to intact.
  ExpectFilledTitle(referenced);
}

}  // namespace
}  // namespace tolvex::test
