// Cost of the profile functions over file size: one value read and one value write in a
// template whose layout section holds `keys` keys, and a four-edge button read (five reads).
#include <tolvex/MenuTemplate.h>
#include <tolvex/Profile.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

class BenchFile {
 public:
  explicit BenchFile(int keys) {
    char pattern[] = "/tmp/tolvex-bench-XXXXXX";
    m_dir = mkdtemp(pattern);
    m_path = m_dir + "/menu.ini";
    std::string text = "[Background]\r\nCurrentNumberOfButton=12\r\n[NumOfButton12]\r\n";
    for (int i = 0; i < keys; ++i)
      text += "ButtonTitle" + std::to_string(i) + "=Chapter " + std::to_string(i) + "\r\n";
    text += "ButtonPosition5_left=10\r\nButtonPosition5_right=20\r\n"
            "ButtonPosition5_top=30\r\nButtonPosition5_bottom=40\r\n";
    FILE* f = std::fopen(m_path.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
  }
  ~BenchFile() {
    unlink(m_path.c_str());
    rmdir(m_dir.c_str());
  }
  const char* path() const { return m_path.c_str(); }

 private:
  std::string m_dir, m_path;
};

void BM_ReadValue(benchmark::State& state) {
  BenchFile file(static_cast<int>(state.range(0)));
  char buffer[80];
  for (auto _ : state) {
    GetPrivateProfileStringA("NumOfButton12", "ButtonPosition5_bottom", "default", buffer,
                             sizeof buffer, file.path());
    benchmark::DoNotOptimize(buffer);
  }
}
BENCHMARK(BM_ReadValue)->RangeMultiplier(10)->Range(10, 10000);

void BM_WriteValue(benchmark::State& state) {
  BenchFile file(static_cast<int>(state.range(0)));
  int n = 0;
  for (auto _ : state) {
    const std::string value = std::to_string(n++);
    benchmark::DoNotOptimize(WritePrivateProfileStringA("NumOfButton12", "ButtonPosition5_top",
                                                        value.c_str(), file.path()));
  }
}
BENCHMARK(BM_WriteValue)->RangeMultiplier(10)->Range(10, 10000);

void BM_GetBtnPosition(benchmark::State& state) {
  BenchFile file(static_cast<int>(state.range(0)));
  CMenuTemplate menu(file.path());
  tagRECT rect{};
  for (auto _ : state) benchmark::DoNotOptimize(menu.GetBtnPosition(5, &rect));
}
BENCHMARK(BM_GetBtnPosition)->RangeMultiplier(10)->Range(10, 10000);

}  // namespace
