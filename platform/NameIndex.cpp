// The growth of NameIndex.
#include "platform/NameIndex.h"

namespace tolvex::platform {
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
