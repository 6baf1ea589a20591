// An index from section or entry names to positions that keeps no copy of the names. Names
// match apart from the case of ASCII letters, as the profile functions match them: the index
// stores a hash of each name so folded and asks its owner for the name at a position to tell
// apart names that share a hash. A lookup hashes the name where it lies and allocates nothing.
// Open addressing with linear probing, at most half full. A plain value.
#ifndef TOLVEX_PLATFORM_NAMEINDEX_H
#define TOLVEX_PLATFORM_NAMEINDEX_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tolvex::platform {

class NameIndex {
 public:
  // Whether `a` and `b` are the same name apart from the case of ASCII letters.
  static bool SameName(std::u16string_view a, std::u16string_view b);

  // The position indexed under `name`, or -1. `nameAt(position)` gives the name of a position.
  template <typename NameAt>
  int64_t Find(std::u16string_view name, const NameAt& nameAt) const {
    if (m_slots.empty()) return -1;
    const uint32_t hash = Hash(name);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      const Slot& slot = m_slots[i];
      if (slot.position == kEmpty) return -1;
      if (slot.hash == hash && SameName(nameAt(slot.position), name)) return slot.position;
    }
  }

  // Indexes `position` under `name` unless the name has a position already, which stays:
  // a name always leads to its first occurrence. True when added.
  template <typename NameAt>
  bool Insert(std::u16string_view name, uint32_t position, const NameAt& nameAt) {
    if (2 * (m_count + 1) > m_slots.size()) Grow();
    const uint32_t hash = Hash(name);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      Slot& slot = m_slots[i];
      if (slot.position == kEmpty) {
        slot = {hash, position};
        ++m_count;
        return true;
      }
      if (slot.hash == hash && SameName(nameAt(slot.position), name)) return false;
    }
  }

  size_t MemoryUse() const { return m_slots.capacity() * sizeof(Slot); }

 private:
  struct Slot {
    uint32_t hash = 0;
    uint32_t position = kEmpty;
  };
  static constexpr uint32_t kEmpty = UINT32_MAX;

  static uint32_t Hash(std::u16string_view name);
  void Grow();  // doubles the slots, placing each again by its stored hash

  std::vector<Slot> m_slots;  // a power of two in size, or empty
  size_t m_count = 0;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_NAMEINDEX_H
