// When a stamp proves a file unchanged, and the racy-time rule.
//
// The kernel stamps a write with a coarse clock that can lag the real time by a timer tick
// (up to 10 ms), so two writes within one tick may leave equal times. A stamp is therefore
// trusted only when it was taken clearly after the file's last change: if the read began
// within kRacyNs of the newer of the modification and change times, a later write could still
// carry the same times, and the next read compares bytes instead (and may then trust the new,
// later stamp). Whatever happens after a trusted stamp gets a later time: rewriting in place
// at the same size changes the modification time, setting that time back changes the change
// time, and renaming another file over it changes the inode (and, were the inode reused, the
// change time). File systems whose times cannot be trusted at all (ReadWholeFile says which)
// are always compared byte for byte.
#include "platform/ParseCache.h"

#include <algorithm>
#include <list>
#include <memory>

#include "platform/Os.h"

namespace tolvex::platform {
namespace {

constexpr int64_t kRacyNs = 50'000'000;
constexpr size_t kMaxEntries = 8;

struct Entry {
  std::string path;
  os::FileStamp stamp;
  bool trusted = false;
  std::string bytes;  // compared when the stamp is not trusted
  std::shared_ptr<const IndexedIni> parse;
  size_t Memory() const { return bytes.capacity() + parse->MemoryUse() + path.size(); }
};

bool Trusted(const os::FileStamp& stamp) {
  return stamp.timesTrusted &&
         stamp.takenNs - std::max(stamp.modifiedNs, stamp.changedNs) > kRacyNs;
}

class Cache {
 public:
  std::shared_ptr<const IndexedIni> Parsed(const std::string& path, Status* status) {
    auto found = std::find_if(m_entries.begin(), m_entries.end(),
                              [&](const Entry& entry) { return entry.path == path; });
    if (found != m_entries.end()) {
      m_entries.splice(m_entries.begin(), m_entries, found);  // most recent first
      Entry& entry = m_entries.front();
      os::FileStamp now;
      if (entry.trusted && os::StampFile(path, &now).ok() && now.SameFileAs(entry.stamp)) {
        *status = Status::Ok();
        return entry.parse;
      }
    }

    std::string bytes;
    os::FileStamp stamp;
    *status = os::ReadWholeFile(path, &bytes, &stamp);
    if (!status->ok()) {
      if (found != m_entries.end()) Drop(m_entries.begin());
      return m_empty;
    }
    if (found != m_entries.end() && m_entries.front().bytes == bytes) {
      // Unchanged after all; the new stamp was taken later and may now be trusted.
      Entry& entry = m_entries.front();
      entry.stamp = stamp;
      entry.trusted = Trusted(stamp);
      return entry.parse;
    }
    if (found != m_entries.end()) Drop(m_entries.begin());

    Entry entry;
    entry.path = path;
    entry.stamp = stamp;
    entry.trusted = Trusted(stamp);
    entry.parse = std::make_shared<const IndexedIni>(bytes);
    entry.bytes = std::move(bytes);
    const size_t memory = entry.Memory();
    if (memory > kParseCacheBytes) return entry.parse;  // used for this read only
    while (!m_entries.empty() &&
           (m_memory + memory > kParseCacheBytes || m_entries.size() >= kMaxEntries))
      Drop(std::prev(m_entries.end()));
    m_entries.push_front(std::move(entry));
    m_memory += memory;
    return m_entries.front().parse;
  }

 private:
  void Drop(std::list<Entry>::iterator entry) {
    m_memory -= entry->Memory();
    m_entries.erase(entry);
  }

  std::list<Entry> m_entries;
  size_t m_memory = 0;
  std::shared_ptr<const IndexedIni> m_empty = std::make_shared<const IndexedIni>();
};

}  // namespace

std::shared_ptr<const IndexedIni> ParsedFile(const std::string& path, Status* status) {
  thread_local Cache cache;
  return cache.Parsed(path, status);
}

}  // namespace tolvex::platform
