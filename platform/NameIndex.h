// An index from section or entry names to positions that keeps no copy of the names. Names
// match apart from the case of ASCII letters, as the profile functions match them: the index
// stores a hash of each name so folded and asks its owner whether the name at a position is the
// one looked for. A lookup hashes the name where it lies and allocates nothing. Open addressing
// with linear probing, at most three quarters full: eight bytes a slot. A plain value.
#ifndef TOLVEX_PLATFORM_NAMEINDEX_H
#define TOLVEX_PLATFORM_NAMEINDEX_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/IniLine.h"

namespace tolvex::platform {

class NameIndex {
 public:
  // Whether `a` and `b` are the same name apart from the case of ASCII letters.
  static bool SameName(std::u16string_view a, std::u16string_view b) {
    return SameName(a, {0, a.size()}, b, {0, b.size()});
  }
  // The same for ranges of any two texts of units (see IniLine.h for what a text gives).
  template <typename TextA, typename TextB>
  static bool SameName(const TextA& a, UnitRange inA, const TextB& b, UnitRange inB) {
    if (inA.size() != inB.size()) return false;
    for (size_t i = 0; i < inA.size(); ++i)
      if (Folded(a[inA.begin + i]) != Folded(b[inB.begin + i])) return false;
    return true;
  }

  // The hash of a name under which it is indexed: the same for names that SameName matches.
  // Each unit is hashed with its 0x20 bit set, which makes ASCII letters of either case hash
  // alike (and a few other pairs, such as '@' and '`', which SameName tells apart). Four units
  // go into each 64-bit step, so that the chain of multiplications is a quarter of the name.
  template <typename Text>
  static uint32_t Hash(const Text& units, UnitRange name) {
    auto unit = [&](size_t i) { return static_cast<uint64_t>(units[i] | 0x20u) & 0xFFFF; };
    uint64_t hash = name.size() * kMultiplier;
    size_t i = name.begin;
    for (; i + 4 <= name.end; i += 4) {
      const uint64_t word = unit(i) | unit(i + 1) << 16 | unit(i + 2) << 32 | unit(i + 3) << 48;
      hash = (hash ^ word) * kMultiplier;
      hash ^= hash >> 32;
    }
    for (; i < name.end; ++i) hash = (hash ^ unit(i)) * kMultiplier;
    return Finish(hash);
  }
  static uint32_t Hash(std::u16string_view name) { return Hash(name, {0, name.size()}); }
  // The same hash of a name whose units are single bytes, each four of them spread from one
  // load into the four 16-bit lanes the units take above (the first byte lowest, as a
  // little-endian load gives it).
  static uint32_t HashBytes(const unsigned char* bytes, size_t size) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "bytes are loaded little-endian");
    uint64_t hash = size * kMultiplier;
    size_t i = 0;
    for (; i + 4 <= size; i += 4) {
      uint32_t four;
      std::memcpy(&four, bytes + i, sizeof four);
      uint64_t word = (four | uint64_t{four} << 16) & 0x0000FFFF0000FFFFu;
      word = (word | word << 8) & 0x00FF00FF00FF00FFu;
      hash = (hash ^ (word | 0x0020002000200020u)) * kMultiplier;
      hash ^= hash >> 32;
    }
    for (; i < size; ++i) hash = (hash ^ (bytes[i] | 0x20u)) * kMultiplier;
    return Finish(hash);
  }

  // The position indexed under a name of hash `hash`, or -1. `isName(position)` tells whether
  // the name at a position is the one looked for.
  template <typename IsName>
  int64_t Find(uint32_t hash, const IsName& isName) const {
    if (m_slots.empty()) return -1;
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      const Slot& slot = m_slots[i];
      if (slot.position == kEmpty) return -1;
      if (slot.hash == hash && isName(slot.position)) return slot.position;
    }
  }

  // Indexes `position` under a name of hash `hash` unless the name has a position already,
  // which stays: a name always leads to its first occurrence. True when added.
  template <typename IsName>
  bool Insert(uint32_t hash, uint32_t position, const IsName& isName) {
    if (4 * (m_count + 1) > 3 * m_slots.size()) Grow();
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      Slot& slot = m_slots[i];
      if (slot.position == kEmpty) {
        slot = {hash, position};
        ++m_count;
        return true;
      }
      if (slot.hash == hash && isName(slot.position)) return false;
    }
  }

  // Indexes `position` under a name of hash `hash` that a Find has just shown to be absent.
  void InsertAbsent(uint32_t hash, uint32_t position) {
    Insert(hash, position, [](uint32_t) { return false; });
  }

  size_t MemoryUse() const { return m_slots.capacity() * sizeof(Slot); }

 private:
  struct Slot {
    uint32_t hash = 0;
    uint32_t position = kEmpty;
  };
  static constexpr uint32_t kEmpty = UINT32_MAX;
  static constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;

  static uint32_t Finish(uint64_t hash) {
    hash ^= hash >> 29;
    hash *= kMultiplier;
    return static_cast<uint32_t>(hash >> 32);
  }

  static char16_t Folded(char16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + ('a' - 'A')) : unit;
  }
  void Grow();  // doubles the slots, placing each again by its stored hash

  std::vector<Slot> m_slots;  // a power of two in size, or empty
  size_t m_count = 0;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_NAMEINDEX_H
