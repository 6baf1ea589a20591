// An index from section or entry names to positions that keeps no copy of the names. Names
// match apart from the case of ASCII letters, as the profile functions match them: the index
// stores a hash of each name so folded and asks its owner whether the name at a position is the
// one looked for. A lookup hashes the name where it lies and allocates nothing. Open addressing
// with linear probing, at most three quarters full: eight bytes a slot. A plain value.
#ifndef TOLVEX_PLATFORM_NAMEINDEX_H
#define TOLVEX_PLATFORM_NAMEINDEX_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/IniLine.h"
#include "platform/WordLoad.h"

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
  // Each unit's low byte is hashed with its 0x20 bit set, which makes ASCII letters of either
  // case hash alike (and a few other pairs, such as '@' and '`', which SameName tells apart).
  // Eight units go into each 64-bit step, their low bytes as one word and, when some unit has
  // one, their high bytes as a second: a name of single-byte units hashes as HashBytes hashes
  // its bytes.
  template <typename Text>
  static uint32_t Hash(const Text& units, UnitRange name) {
    uint64_t hash = name.size() * kMultiplier;
    for (size_t i = name.begin; i < name.end; i += 8) {
      const size_t count = std::min<size_t>(8, name.end - i);
      uint64_t low = 0, high = 0;
      for (size_t j = 0; j < count; ++j) {
        const char16_t unit = units[i + j];
        low |= static_cast<uint64_t>(unit & 0xFF) << (8 * j);
        high |= static_cast<uint64_t>(unit >> 8) << (8 * j);
      }
      hash = Step(hash, low | (kCaseBits >> (8 * (8 - count))), high);
    }
    return Finish(hash);
  }
  static uint32_t Hash(std::u16string_view name) { return Hash(name, {0, name.size()}); }
  // The same hash of a name whose units are single bytes, loaded eight at a time; `see` is
  // shown each word loaded and how many of its bytes are the name's, for a caller that would
  // otherwise read the name again.
  template <typename See>
  static uint32_t HashBytes(const unsigned char* bytes, size_t size, const See& see) {
    uint64_t hash = size * kMultiplier;
    for (size_t i = 0; i < size; i += 8) {
      const size_t count = std::min<size_t>(8, size - i);
      const uint64_t word = LoadWord(bytes + i, count);
      see(word, count);
      hash = Step(hash, word | (kCaseBits >> (8 * (8 - count))), 0);
    }
    return Finish(hash);
  }
  static uint32_t HashBytes(const unsigned char* bytes, size_t size) {
    return HashBytes(bytes, size, [](uint64_t, size_t) {});
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

  static constexpr uint64_t kCaseBits = 0x2020202020202020u;

  static uint64_t Step(uint64_t hash, uint64_t low, uint64_t high) {
    hash = (hash ^ low) * kMultiplier;
    if (high != 0) hash = (hash ^ high) * kMultiplier;
    return hash ^ (hash >> 32);
  }
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
