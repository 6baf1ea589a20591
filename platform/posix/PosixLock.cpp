// FolderLock on POSIX: an exclusive flock() on the folder that holds the profile file. Every
// writer of the platform layer, in any thread of any process, takes it around its whole
// read-modify-replace, so no update is lost.
//
// Why this kind of lock:
//  - flock() locks belong to the open file description. Two threads of one process that each
//    open the folder get two descriptions and exclude each other, just as two processes do, so
//    one lock covers threads and processes alike. Per-process fcntl() locks would not: they
//    never conflict within a process, and any close() of any descriptor of the file by any
//    thread silently drops them.
//  - We lock the folder, not the data file. Each write renames a new file over the old one, so
//    a lock on the data file would sit on an inode that is no longer the file: a waiter would
//    wake up holding a lock on the replaced copy (fixable only by re-checking the inode after
//    locking and retrying). The file may also not exist yet. The folder stays the same inode
//    for the life of the file, needs no lock file beside the user's files, and is where the
//    rename happens. The price is that writers of different files in one folder take turns;
//    each holds the lock for one small file's read and write.
//  - Readers take no lock: the atomic rename lets them see the old file or the new one.
//
// What an edit holds: an edit (ProfileEdit.h) takes its file's folder lock when it begins and
// keeps it until it commits or is dropped, so that writers elsewhere (other threads, other
// processes) wait for it and no update is lost on either side. Readers elsewhere are not
// held up; they see the file as it was until the commit renames the new one over it.
// Because the edit's thread keeps the lock while it goes on making other calls, the lock is
// re-entrant per thread: each thread records the folders it holds (by device and inode), and a
// second Acquire of a held folder, by a plain write to another file of that folder or by a
// second edit there, only counts up. Other threads never count on that record; their Acquire
// opens the folder again and waits on flock() as any other process does.
//
// The record is one table for the process, each entry naming its holder (process and thread),
// so that a lock can be released from any thread: an edit dropped by another thread, or by
// the end of its thread, releases its lock at once. A forked child inherits the table and the
// descriptors, and with them the open file description that holds the parent's lock: a release
// in the child only closes its copy of the descriptor, and never unlocks (LOCK_UN would free
// the parent's lock). The table's mutex is held across fork() so a child never inherits it
// taken.
//
// Lock order: a thread may hold several folder locks only through edits. It waits only for a
// folder that sorts after every folder it holds (by device, then inode); for any other it tries
// once without waiting and fails with EDEADLK when the folder is busy. Every wait thus goes up
// the same order in every thread and process, so no cycle of waiters can form. Plain calls hold
// one lock at a time and always wait. The descriptor is close-on-exec, and the lock is released
// explicitly with LOCK_UN so a child forked meanwhile cannot keep it.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixStatus.h"
#include "platform/posix/Syscalls.h"

namespace tolvex::platform::os {
namespace {

struct HeldFolder {
  uint64_t device;
  uint64_t inode;
  pid_t pid;
  std::thread::id thread;
  int fd;
  int count;
};

// The folder locks held in this process, and the mutex that guards them. Never destroyed, so
// that a thread ending after main() returned still finds them.
struct HeldTable {
  std::mutex mutex;
  std::vector<HeldFolder> held;
};

std::atomic<int> g_pid{0};

HeldTable& Table() {
  static HeldTable* table = [] {
    auto* made = new HeldTable;
    pthread_atfork([] { Table().mutex.lock(); }, [] { Table().mutex.unlock(); },
                   [] {
                     g_pid.store(static_cast<int>(::getpid()), std::memory_order_relaxed);
                     Table().mutex.unlock();
                   });
    g_pid.store(static_cast<int>(::getpid()), std::memory_order_relaxed);
    return made;
  }();
  return *table;
}

bool SortsBefore(uint64_t device, uint64_t inode, const HeldFolder& held) {
  return device != held.device ? device < held.device : inode < held.inode;
}

}  // namespace

int ProcessId() {
  Table();  // registers the renewal after fork()
  return g_pid.load(std::memory_order_relaxed);
}

FolderLock::~FolderLock() {
  if (!m_held) return;
  HeldTable& table = Table();
  std::lock_guard<std::mutex> guard(table.mutex);
  for (auto it = table.held.begin(); it != table.held.end(); ++it) {
    if (it->device != m_device || it->inode != m_inode || it->pid != m_pid ||
        it->thread != m_thread)
      continue;
    if (--it->count == 0) {
      // In a forked child the description is the parent's too: closing our descriptor keeps
      // the parent's lock, LOCK_UN would release it.
      if (it->pid == ProcessId()) ::flock(it->fd, LOCK_UN);
      ::close(it->fd);
      table.held.erase(it);
    }
    return;
  }
}

Status FolderLock::Acquire(const std::string& file) {
  if (m_held) return Status::Error(StatusCode::kInvalidArgument);
  // The folder open is not a fault-injection point; the flock below is.
  int fd = ::open(posix::FolderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return StatusFromErrno(errno);
  struct stat info;
  if (::fstat(fd, &info) != 0) {
    Status status = StatusFromErrno(errno);
    sys::CloseQuietly(fd);
    return status;
  }
  const uint64_t device = info.st_dev, inode = info.st_ino;
  const pid_t pid = ProcessId();
  const std::thread::id thread = std::this_thread::get_id();
  HeldTable& table = Table();
  bool mayWait = true;
  {
    std::lock_guard<std::mutex> guard(table.mutex);
    for (HeldFolder& held : table.held) {
      if (held.pid != pid || held.thread != thread) continue;
      if (held.device == device && held.inode == inode) {
        sys::CloseQuietly(fd);
        ++held.count;
        m_held = true, m_device = device, m_inode = inode, m_pid = pid, m_thread = thread;
        return Status::Ok();
      }
      if (SortsBefore(device, inode, held)) mayWait = false;
    }
  }
  // Waited for without the table's mutex: only this thread adds entries for itself.
  if (sys::Flock(fd, mayWait ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
    Status status = StatusFromErrno(errno == EWOULDBLOCK ? EDEADLK : errno);
    sys::CloseQuietly(fd);
    return status;
  }
  std::lock_guard<std::mutex> guard(table.mutex);
  table.held.push_back({device, inode, pid, thread, fd, 1});
  m_held = true, m_device = device, m_inode = inode, m_pid = pid, m_thread = thread;
  return Status::Ok();
}

}  // namespace tolvex::platform::os
