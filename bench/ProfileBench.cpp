// Cost of the profile functions, as ratios to what the system itself must spend:
//  - a whole page (every property of every button, layouts of counts 1 to N) built call by
//    call, and built inside one TemplateEdit, against the durable-write floor: the same bytes
//    written once to a temporary file, flushed, renamed over the file, and the folder flushed;
//  - one value read, and GetBtnPosition (five reads), against one stat() of the file, on
//    templates of about 6 KB, 38 KB and 550 KB;
//  - one call-by-call write (an existing key, a new key) and SetBtnPosition (four writes)
//    against the durable-write floor of the same file, with the heap a write takes beyond what
//    it held before, as a multiple of the size of the file it changes ("heap_x_file": the
//    largest over the iterations after the first; "heap_first_x_file": the first write on a
//    file only read so far), and the heap the first read of the file takes to make its form
//    ("read_first_x_file").
// Each benchmark times both sides itself, interleaved, and reports their ratio as the counter
// "x_floor" or "x_stat"; run with --benchmark_repetitions for medians.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tolvex/MenuTemplate.h>
#include <tolvex/Profile.h>
#include <tolvex/TemplateEdit.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <random>
#include <string>

#include "tests/support/FullPage.h"

// A counting heap: the bytes in use now and the most in use since the last ResetPeak. Counts
// usable sizes, so what a free returns is known without a table.
namespace heap {
std::atomic<size_t> inUse{0}, peak{0};
void Note(void* block) {
  if (!block) return;
  const size_t now = inUse.fetch_add(malloc_usable_size(block)) + malloc_usable_size(block);
  size_t high = peak.load();
  while (now > high && !peak.compare_exchange_weak(high, now)) {
  }
}
void ResetPeak() { peak = inUse.load(); }
}  // namespace heap

void* operator new(size_t size) {
  void* block = std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  heap::Note(block);
  return block;
}
// The blocks of this operator new come from malloc, so free is their match.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void* block) noexcept {
  if (block) heap::inUse -= malloc_usable_size(block);
  std::free(block);
}
#pragma GCC diagnostic pop
void operator delete(void* block, size_t) noexcept { operator delete(block); }

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point since) {
  return std::chrono::duration<double>(Clock::now() - since).count();
}

class BenchDir {
 public:
  BenchDir() {
    char pattern[] = "/tmp/tolvex-bench-XXXXXX";
    m_dir = mkdtemp(pattern);
  }
  ~BenchDir() { std::system(("rm -rf '" + m_dir + "'").c_str()); }
  std::string File(const char* name) const { return m_dir + "/" + name; }
  const std::string& path() const { return m_dir; }

 private:
  std::string m_dir;
};

std::string ReadAll(const std::string& path) {
  std::string bytes;
  if (FILE* f = std::fopen(path.c_str(), "rb")) {
    char buffer[65536];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, got);
    std::fclose(f);
  }
  return bytes;
}

// The floor: one durable replace of `path` by `bytes`.
void DurableWrite(const std::string& folder, const std::string& path, const std::string& bytes) {
  const std::string temporary = path + ".floor";
  int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0 || write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
      fsync(fd) != 0 || close(fd) != 0 || rename(temporary.c_str(), path.c_str()) != 0)
    std::abort();
  int dir = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  fsync(dir);
  close(dir);
}

// Builds the page of layouts 1..range(0) per iteration, call by call or in one edit.
void PageBuild(benchmark::State& state, bool inEdit) {
  BenchDir dir;
  const unsigned maxCount = static_cast<unsigned>(state.range(0));
  const std::string path = dir.File("menu.ini"), floorPath = dir.File("floor.ini");
  double built = 0, floor = 0;
  std::string bytes;
  for (auto _ : state) {
    unlink(path.c_str());
    CMenuTemplate menu(path.c_str());
    Clock::time_point start = Clock::now();
    if (inEdit) {
      tolvex::TemplateEdit edit(menu);
      if (!tolvex::test::BuildFullPage(menu, maxCount) || !edit.Commit()) std::abort();
    } else if (!tolvex::test::BuildFullPage(menu, maxCount)) {
      std::abort();
    }
    const double seconds = Seconds(start);
    built += seconds;
    state.SetIterationTime(seconds);
    if (bytes.empty()) bytes = ReadAll(path);
    start = Clock::now();
    DurableWrite(dir.path(), floorPath, bytes);
    floor += Seconds(start);
  }
  state.counters["bytes"] = static_cast<double>(bytes.size());
  state.counters["x_floor"] = built / floor;
}

void BM_PageCallByCall(benchmark::State& state) { PageBuild(state, false); }
BENCHMARK(BM_PageCallByCall)->Arg(2)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_PageInOneEdit(benchmark::State& state) { PageBuild(state, true); }
BENCHMARK(BM_PageInOneEdit)->Arg(2)->Arg(36)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_DurableWriteFloor(benchmark::State& state) {
  BenchDir dir;
  const std::string path = dir.File("menu.ini");
  CMenuTemplate menu(path.c_str());
  {
    tolvex::TemplateEdit edit(menu);
    tolvex::test::BuildFullPage(menu, static_cast<unsigned>(state.range(0)));
    edit.Commit();
  }
  const std::string bytes = ReadAll(path);
  for (auto _ : state) DurableWrite(dir.path(), dir.File("floor.ini"), bytes);
  state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_DurableWriteFloor)->Arg(36)->Unit(benchmark::kMillisecond);

// A page of layouts 1..maxCount, so that its size grows with maxCount: 4 gives about 6 KB,
// 11 about 38 KB and 42 about 550 KB.
class PageFile {
 public:
  explicit PageFile(unsigned maxCount) : m_path(m_dir.File("menu.ini")), m_menu(m_path.c_str()) {
    tolvex::TemplateEdit edit(m_menu);
    tolvex::test::BuildFullPage(m_menu, maxCount);
    edit.Commit();
    struct stat info;
    stat(m_path.c_str(), &info);
    m_bytes = static_cast<double>(info.st_size);
  }
  const char* path() const { return m_path.c_str(); }
  CMenuTemplate& menu() { return m_menu; }
  double bytes() const { return m_bytes; }

 private:
  BenchDir m_dir;
  std::string m_path;
  CMenuTemplate m_menu;
  double m_bytes = 0;
};

// Times `call` and stat() of the same file in batches of kBatch each, alternating, and reports
// their ratio and the time of one of each; the benchmark's own time is that of a batch pair.
template <typename Call>
void AgainstStat(benchmark::State& state, const PageFile& file, Call call) {
  constexpr int kBatch = 200;
  double called = 0, statted = 0;
  struct stat info;
  for (auto _ : state) {
    Clock::time_point start = Clock::now();
    for (int i = 0; i < kBatch; ++i) benchmark::DoNotOptimize(stat(file.path(), &info));
    statted += Seconds(start);
    start = Clock::now();
    for (int i = 0; i < kBatch; ++i) call();
    called += Seconds(start);
  }
  state.counters["bytes"] = file.bytes();
  state.counters["x_stat"] = called / statted;
  state.counters["call_us"] = called * 1e6 / (static_cast<double>(state.iterations()) * kBatch);
  state.counters["stat_us"] = statted * 1e6 / (static_cast<double>(state.iterations()) * kBatch);
}

void BM_ReadValue(benchmark::State& state) {
  PageFile file(static_cast<unsigned>(state.range(0)));
  char buffer[80];
  AgainstStat(state, file, [&] {
    GetPrivateProfileStringA("NumOfButton2", "ButtonPosition1_bottom", "default", buffer,
                             sizeof buffer, file.path());
    benchmark::DoNotOptimize(buffer);
  });
}
BENCHMARK(BM_ReadValue)->Arg(4)->Arg(11)->Arg(42);

void BM_GetBtnPosition(benchmark::State& state) {
  PageFile file(static_cast<unsigned>(state.range(0)));
  tagRECT rect{};
  AgainstStat(state, file, [&] { benchmark::DoNotOptimize(file.menu().GetBtnPosition(1, &rect)); });
}
BENCHMARK(BM_GetBtnPosition)->Arg(4)->Arg(11)->Arg(36)->Arg(42);

// Times `write(i)` (one call-by-call change of the file) against the durable-write floor of the
// file's bytes, alternating, and measures the heap each write takes beyond what was in use.
template <typename Write>
void AgainstFloor(benchmark::State& state, PageFile& file, Write write) {
  BenchDir floorDir;
  const std::string floorPath = floorDir.File("floor.ini");
  const std::string bytes = ReadAll(file.path());
  char buffer[80];
  // A read first, as an application reads a page before it changes it: it reads the file and
  // makes its indexed form, which the cache of this thread keeps ("read_first_x_file": the
  // most heap it took beyond what was in use).
  const size_t beforeRead = heap::inUse.load();
  heap::ResetPeak();
  GetPrivateProfileStringA("Background", "NTSC", "", buffer, sizeof buffer, file.path());
  state.counters["read_first_x_file"] =
      (static_cast<double>(heap::peak.load()) - static_cast<double>(beforeRead)) / file.bytes();
  double written = 0, floor = 0, firstHeap = 0, heapMost = 0;
  unsigned i = 0;
  for (auto _ : state) {
    // New keys make the file grow: each write is measured against the file it changes.
    struct stat info;
    stat(file.path(), &info);
    const size_t before = heap::inUse.load();
    heap::ResetPeak();
    Clock::time_point start = Clock::now();
    if (!write(i)) std::abort();
    written += Seconds(start);
    const double taken = (static_cast<double>(heap::peak.load()) - static_cast<double>(before)) /
                         static_cast<double>(info.st_size);
    if (i == 0) {
      firstHeap = taken;
    } else {
      heapMost = std::max(heapMost, taken);
    }
    ++i;
    start = Clock::now();
    DurableWrite(floorDir.path(), floorPath, bytes);
    floor += Seconds(start);
  }
  state.counters["bytes"] = file.bytes();
  state.counters["x_floor"] = written / floor;
  state.counters["write_ms"] = written * 1e3 / static_cast<double>(state.iterations());
  state.counters["floor_ms"] = floor * 1e3 / static_cast<double>(state.iterations());
  state.counters["heap_first_x_file"] = firstHeap;
  state.counters["heap_x_file"] = heapMost;
}

// An existing key of a random layout gets a new value.
void BM_WriteExistingKey(benchmark::State& state) {
  const unsigned maxCount = static_cast<unsigned>(state.range(0));
  PageFile file(maxCount);
  std::mt19937 random(7);
  AgainstFloor(state, file, [&](unsigned i) {
    const std::string section = "NumOfButton" + std::to_string(1 + random() % maxCount);
    return WritePrivateProfileStringA(section.c_str(), "ButtonPosition0_left",
                                      std::to_string(1000 + i).c_str(), file.path());
  });
}
BENCHMARK(BM_WriteExistingKey)->Arg(4)->Arg(11)->Arg(42)->Unit(benchmark::kMillisecond);

// A key not in the file yet goes at the end of a random layout.
void BM_WriteNewKey(benchmark::State& state) {
  const unsigned maxCount = static_cast<unsigned>(state.range(0));
  PageFile file(maxCount);
  std::mt19937 random(11);
  AgainstFloor(state, file, [&](unsigned i) {
    const std::string section = "NumOfButton" + std::to_string(1 + random() % maxCount);
    return WritePrivateProfileStringA(section.c_str(), ("Added" + std::to_string(i)).c_str(),
                                      "1", file.path());
  });
}
BENCHMARK(BM_WriteNewKey)->Arg(4)->Arg(11)->Arg(42)->Unit(benchmark::kMillisecond);

// SetBtnPosition: the layout lookup and four writes.
void BM_SetBtnPosition(benchmark::State& state) {
  const unsigned maxCount = static_cast<unsigned>(state.range(0));
  PageFile file(maxCount);
  std::mt19937 random(13);
  AgainstFloor(state, file, [&](unsigned i) {
    const int x = static_cast<int>(i % 500);
    return file.menu().SetBtnPosition(random() % maxCount, tagRECT{x, 10, x + 100, 80}) == 1;
  });
}
BENCHMARK(BM_SetBtnPosition)->Arg(42)->Unit(benchmark::kMillisecond);

}  // namespace
