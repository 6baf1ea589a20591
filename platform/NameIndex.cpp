// The hash and the name comparison of NameIndex, and its growth.
#include "platform/NameIndex.h"

#include <cstring>

namespace tolvex::platform {
namespace {

char16_t FoldedUnit(char16_t unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + ('a' - 'A')) : unit;
}

}  // namespace

bool NameIndex::SameName(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (FoldedUnit(a[i]) != FoldedUnit(b[i])) return false;
  return true;
}

uint32_t NameIndex::Hash(std::u16string_view name) {
  // Every unit is hashed with its 0x20 bit set, which makes ASCII letters of either case hash
  // alike (and a few other pairs, such as '@' and '`', which SameName tells apart). Four units
  // go into each 64-bit step; the last step takes the last four units, overlapping the one
  // before when the length is no multiple of four.
  constexpr uint64_t kCaseBits = 0x0020002000200020u, kMultiplier = 0x9E3779B97F4A7C15u;
  uint64_t hash = name.size() * kMultiplier;
  auto step = [&](const char16_t* units) {
    uint64_t word;
    std::memcpy(&word, units, sizeof word);
    hash = (hash ^ (word | kCaseBits)) * kMultiplier;
    hash ^= hash >> 29;
  };
  if (name.size() >= 4) {
    size_t i = 0;
    for (; i + 4 < name.size(); i += 4) step(name.data() + i);
    step(name.data() + name.size() - 4);
  } else {
    for (char16_t unit : name) hash = (hash ^ (unit | 0x20u)) * kMultiplier;
  }
  hash ^= hash >> 32;
  return static_cast<uint32_t>(hash);
}

void NameIndex::Grow() {
  std::vector<Slot> old(m_slots.empty() ? 8 : m_slots.size() * 2);
  old.swap(m_slots);
  const size_t mask = m_slots.size() - 1;
  for (const Slot& slot : old) {
    if (slot.position == kEmpty) continue;
    size_t i = slot.hash & mask;
    while (m_slots[i].position != kEmpty) i = (i + 1) & mask;
    m_slots[i] = slot;
  }
}

}  // namespace tolvex::platform
