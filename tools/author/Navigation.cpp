// Arrow-key links of a menu page (see Navigation.h).
#include "tools/author/Navigation.h"

#include <cstdlib>
#include <limits>

namespace menutool::author {
namespace {

enum Direction { kUp, kDown, kLeft, kRight };

struct Point {
  long long x, y;  // doubled centre, so that it stays an integer
};

Point Centre(const tagRECT& r) {
  return {static_cast<long long>(r.left) + r.right, static_cast<long long>(r.top) + r.bottom};
}

// The nearest other button by grid place, or nullopt. Only buttons with navigation values take
// part: a grid place says nothing about where a button without one sits.
std::optional<size_t> ByGrid(const std::vector<NavButton>& buttons, size_t from, Direction d) {
  const GridPlace me = *buttons[from].at;
  std::optional<size_t> best;
  long long bestRow = 0, bestColumn = 0;
  for (size_t i = 0; i < buttons.size(); ++i) {
    if (i == from || !buttons[i].at) continue;
    const long long dr = static_cast<long long>(buttons[i].at->row) - me.row;
    const long long dc = static_cast<long long>(buttons[i].at->column) - me.column;
    long long row, column;  // distances, primary first
    switch (d) {
      case kUp: if (dr >= 0) continue; row = -dr; column = std::llabs(dc); break;
      case kDown: if (dr <= 0) continue; row = dr; column = std::llabs(dc); break;
      case kLeft: if (dr != 0 || dc >= 0) continue; row = 0; column = -dc; break;
      default: if (dr != 0 || dc <= 0) continue; row = 0; column = dc; break;
    }
    if (!best || row < bestRow || (row == bestRow && column < bestColumn)) {
      best = i;
      bestRow = row;
      bestColumn = column;
    }
  }
  return best;
}

// The nearest other button whose centre lies in direction `d`, or nullopt. A button counts
// as lying above when its centre is higher and no further off sideways than up; the offset
// across the direction counts double, so a button straight ahead wins over a nearer one
// diagonally off.
std::optional<size_t> ByGeometry(const std::vector<NavButton>& buttons, size_t from,
                                 Direction d) {
  const Point me = Centre(buttons[from].rect);
  std::optional<size_t> best;
  long long bestScore = std::numeric_limits<long long>::max();
  for (size_t i = 0; i < buttons.size(); ++i) {
    if (i == from) continue;
    const Point p = Centre(buttons[i].rect);
    long long along, across;
    switch (d) {
      case kUp: along = me.y - p.y; across = std::llabs(p.x - me.x); break;
      case kDown: along = p.y - me.y; across = std::llabs(p.x - me.x); break;
      case kLeft: along = me.x - p.x; across = std::llabs(p.y - me.y); break;
      default: along = p.x - me.x; across = std::llabs(p.y - me.y); break;
    }
    if (along <= 0 || across > along) continue;
    const long long score = along + 2 * across;
    if (score < bestScore) {
      best = i;
      bestScore = score;
    }
  }
  return best;
}

bool Level(const tagRECT& a, const tagRECT& b) {  // b's middle line crosses a
  const long long middle = static_cast<long long>(b.top) + b.bottom;
  return 2LL * a.top <= middle && middle < 2LL * a.bottom;
}

bool Aligned(const tagRECT& a, const tagRECT& b) {  // b's middle column crosses a
  const long long middle = static_cast<long long>(b.left) + b.right;
  return 2LL * a.left <= middle && middle < 2LL * a.right;
}

// A grid place for a button without navigation values, from the buttons with values around it:
// the row of those level with it, and the column of those above or below it, or else the column
// beside the nearest button of its row. None when either cannot be found or the place is taken.
std::optional<GridPlace> Infer(const std::vector<NavButton>& buttons, size_t which) {
  const tagRECT& me = buttons[which].rect;
  std::optional<unsigned> row, column;
  const NavButton* nearest = nullptr;  // the nearest button with values in the same row
  for (const NavButton& b : buttons) {
    if (!b.at) continue;
    if (!row && Level(b.rect, me)) row = b.at->row;
    if (!column && Aligned(b.rect, me)) column = b.at->column;
    if (row && b.at->row == *row && Level(b.rect, me) &&
        (!nearest || std::llabs(Centre(b.rect).x - Centre(me).x) <
                         std::llabs(Centre(nearest->rect).x - Centre(me).x)))
      nearest = &b;
  }
  if (!column && nearest) {
    const bool left = Centre(me).x < Centre(nearest->rect).x;
    if (left && nearest->at->column > 0) column = nearest->at->column - 1;
    if (!left) column = nearest->at->column + 1;
  }
  if (!row || !column) return std::nullopt;
  for (const NavButton& b : buttons)
    if (b.at && b.at->row == *row && b.at->column == *column) return std::nullopt;
  return GridPlace{*row, *column};
}

size_t Neighbour(const std::vector<NavButton>& buttons, size_t from, Direction d) {
  if (buttons[from].at)
    if (auto to = ByGrid(buttons, from, d)) return *to;
  if (auto to = ByGeometry(buttons, from, d)) return *to;
  const size_t n = buttons.size();
  switch (d) {
    case kLeft: return (from + n - 1) % n;
    case kRight: return (from + 1) % n;
    default: return from;
  }
}

}  // namespace

std::vector<Links> DeriveLinks(const std::vector<NavButton>& given) {
  std::vector<NavButton> buttons = given;
  for (size_t i = 0; i < buttons.size(); ++i)
    if (!given[i].at) buttons[i].at = Infer(given, i);
  std::vector<Links> links;
  for (size_t i = 0; i < buttons.size(); ++i) {
    links.push_back({Neighbour(buttons, i, kUp), Neighbour(buttons, i, kDown),
                     Neighbour(buttons, i, kLeft), Neighbour(buttons, i, kRight)});
  }
  if (!AllReachable(links)) {
    const size_t n = buttons.size();
    for (size_t i = 0; i < n; ++i) {
      links[i].left = (i + n - 1) % n;
      links[i].right = (i + 1) % n;
    }
  }
  return links;
}

bool AllReachable(const std::vector<Links>& links) {
  // Every button reaches every other exactly when all are reached from the first and the
  // first is reached from all: a search over the links and one over the reversed links.
  const size_t n = links.size();
  for (bool reversed : {false, true}) {
    std::vector<std::vector<size_t>> next(n);
    for (size_t i = 0; i < n; ++i)
      for (size_t to : {links[i].up, links[i].down, links[i].left, links[i].right})
        reversed ? next[to].push_back(i) : next[i].push_back(to);
    std::vector<bool> seen(n, false);
    std::vector<size_t> stack;
    if (n) stack.push_back(0), seen[0] = true;
    while (!stack.empty()) {
      const size_t at = stack.back();
      stack.pop_back();
      for (size_t to : next[at])
        if (!seen[to]) seen[to] = true, stack.push_back(to);
    }
    for (bool s : seen)
      if (!s) return false;
  }
  return true;
}

}  // namespace menutool::author
