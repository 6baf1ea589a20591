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
