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
  std::shared_ptr<IndexedIni> form;
  size_t memory = 0;  // as counted when kept: writes change the form in place
};

class Cache {
 public:
  std::shared_ptr<IndexedIni> Current(const std::string& path, Status* status) {
    auto found = Find(path);
    if (found != m_entries.end()) {
      m_entries.splice(m_entries.begin(), m_entries, found);  // most recent first
      found = m_entries.begin();
      os::FileStamp now;
      if (found->trusted && os::StampFile(path, &now).ok() && now.SameFileAs(found->stamp)) {
        *status = Status::Ok();
        return found->form;
      }
    }

    std::string bytes;
    os::FileStamp stamp;
    *status = os::ReadWholeFile(path, &bytes, &stamp);
    if (!status->ok()) {
      if (found != m_entries.end()) Drop(found);
      return nullptr;
    }
    if (found != m_entries.end() && found->form->HasBytes(bytes)) {
      // Unchanged after all; the new stamp was taken later and may now be trusted.
      found->stamp = stamp;
      found->trusted = StampProvesContent(stamp);
      return found->form;
    }
    if (found != m_entries.end()) Drop(found);

    Entry entry;
    entry.path = path;
    entry.stamp = stamp;
    entry.trusted = StampProvesContent(stamp);
    // The form keeps the bytes read as its own.
    entry.form = std::make_shared<IndexedIni>(std::move(bytes));
    std::shared_ptr<IndexedIni> form = entry.form;
    Keep(std::move(entry));  // unless it is too large: then it serves this call only
    return form;
  }

  // `form` was written to `path`: it becomes the cached form of the file (whatever
  // was cached for the path before, which a file made anew never came from). The file is
  // stamped again, and the stamp is trusted only once a later read has compared the bytes
  // (the write is too recent to tell apart from one in the same clock tick).
  void Written(const std::string& path, std::shared_ptr<IndexedIni> form) {
    Forget(path);
    Entry entry;
    entry.path = path;
    if (!os::StampFile(path, &entry.stamp).ok()) return;
    entry.trusted = false;
    entry.form = std::move(form);
    Keep(std::move(entry));
  }

  void Forget(const std::string& path) {
    auto found = Find(path);
    if (found != m_entries.end()) Drop(found);
  }

 private:
  void Keep(Entry entry) {
    const size_t memory = entry.memory = entry.form->MemoryUse() + entry.path.size();
    if (memory > kParseCacheBytes) return;
    while (!m_entries.empty() &&
           (m_memory + memory > kParseCacheBytes || m_entries.size() >= kMaxEntries))
      Drop(std::prev(m_entries.end()));
    m_entries.push_front(std::move(entry));
    m_memory += memory;
  }

  std::list<Entry>::iterator Find(const std::string& path) {
    return std::find_if(m_entries.begin(), m_entries.end(),
                        [&](const Entry& entry) { return entry.path == path; });
  }
  void Drop(std::list<Entry>::iterator entry) {
    m_memory -= entry->memory;
    m_entries.erase(entry);
  }

  std::list<Entry> m_entries;
  size_t m_memory = 0;
};

thread_local Cache t_cache;

}  // namespace

bool StampProvesContent(const os::FileStamp& stamp) {
  return stamp.timesTrusted &&
         stamp.takenNs - std::max(stamp.modifiedNs, stamp.changedNs) > kRacyNs;
}

std::shared_ptr<const IndexedIni> ParsedFile(const std::string& path, Status* status) {
  static const auto empty = std::make_shared<const IndexedIni>();
  std::shared_ptr<const IndexedIni> form = t_cache.Current(path, status);
  return form ? form : empty;
}

std::shared_ptr<IndexedIni> FileToChange(const std::string& path, Status* status) {
  return t_cache.Current(path, status);
}

void FileWritten(const std::string& path, std::shared_ptr<IndexedIni> form) {
  t_cache.Written(path, std::move(form));
}

void ForgetFile(const std::string& path) { t_cache.Forget(path); }

}  // namespace tolvex::platform
