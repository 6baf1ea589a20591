#include "tools/author/Navigation.h"

#include <gtest/gtest.h>

namespace menutool::author {
namespace {

NavButton At(int x, int y, std::optional<GridPlace> at = std::nullopt) {
  return {{x, y, x + 100, y + 60}, at};
}

// up, down, left, right of each button
using Table = std::vector<std::vector<size_t>>;

Table Of(const std::vector<Links>& links) {
  Table table;
  for (const Links& l : links) table.push_back({l.up, l.down, l.left, l.right});
  return table;
}

TEST(Navigation, GridValuesLinkRowsAndColumnsAndLeftRightWrapInListOrder) {
  // Two rows of two, then previous and next below, each with its navigation values.
  const std::vector<NavButton> page = {
      At(100, 100, GridPlace{1, 1}), At(300, 100, GridPlace{1, 2}), At(100, 200, GridPlace{2, 1}),
      At(300, 200, GridPlace{2, 2}), At(50, 400, GridPlace{3, 1}),  At(400, 400, GridPlace{3, 2})};
  const std::vector<Links> links = DeriveLinks(page);
  EXPECT_EQ(Of(links), (Table{{0, 2, 5, 1},
                              {1, 3, 0, 2},
                              {0, 4, 1, 3},
                              {1, 5, 2, 4},
                              {2, 4, 3, 5},
                              {3, 5, 4, 0}}));
  EXPECT_TRUE(AllReachable(links));
}

TEST(Navigation, WithoutGridValuesTheNearestButtonInThatDirection) {
  // A row of three and one button below the middle; the last has navigation values the others
  // lack, which cannot place it among them, so the picture decides there too. Buttons within
  // 45 degrees of a direction count as lying in it: the right one's down is the bottom one.
  const std::vector<NavButton> page = {At(0, 100), At(200, 100), At(400, 100),
                                       At(210, 300, GridPlace{9, 9})};
  EXPECT_EQ(Of(DeriveLinks(page)), (Table{{0, 0, 3, 1},
                                          {1, 3, 0, 2},
                                          {2, 3, 1, 3},
                                          {1, 3, 0, 0}}));
}

TEST(Navigation, AButtonWithoutValuesTakesItsPlaceFromTheButtonsAroundIt) {
  // Two wide buttons over previous and next; the first button has no values of its own. It is
  // level with (1,2) and left of it, so it is (1,1), and the previous button (2,1) goes up to
  // it, not to (1,2), the only other button of row 1.
  const std::vector<NavButton> page = {{{72, 148, 351, 306}, std::nullopt},
                                       {{368, 148, 647, 306}, GridPlace{1, 2}},
                                       {{72, 392, 168, 432}, GridPlace{2, 1}},
                                       {{552, 392, 648, 432}, GridPlace{2, 2}}};
  EXPECT_EQ(Of(DeriveLinks(page)), (Table{{0, 2, 3, 1},
                                          {1, 3, 0, 2},
                                          {0, 2, 1, 3},
                                          {1, 3, 2, 0}}));
  // Above the previous button instead, it takes that button's column, and (1,2) its row.
  std::vector<NavButton> above = page;
  above[0].rect = {80, 148, 160, 306};
  EXPECT_EQ(DeriveLinks(above)[2].up, 0u);
}

TEST(Navigation, LinksThatLeaveButtonsOutOfReachFallBackToListOrder) {
  // Buttons 0 and 2 share grid row 0 and point only at each other; 1 and 3 have no values.
  const std::vector<NavButton> page = {
      {{400, 160, 460, 220}, GridPlace{0, 2}},
      {{320, 160, 380, 220}, std::nullopt},
      {{560, 240, 620, 300}, GridPlace{0, 0}},
      {{0, 0, 60, 60}, std::nullopt}};
  const std::vector<Links> links = DeriveLinks(page);
  ASSERT_TRUE(AllReachable(links));
  for (size_t i = 0; i < page.size(); ++i) {
    EXPECT_EQ(links[i].right, (i + 1) % page.size());
    EXPECT_EQ(links[i].left, (i + page.size() - 1) % page.size());
  }
}

TEST(Navigation, ReachabilityNeedsEveryButtonFromEveryOther) {
  // 0 reaches 1, but 1 never comes back.
  EXPECT_FALSE(AllReachable({{0, 0, 1, 1}, {1, 1, 1, 1}}));
}

}  // namespace
}  // namespace menutool::author
