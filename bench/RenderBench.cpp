// Rendering a twelve-button menu page against its floor: what decoding the page's pictures and
// encoding and writing a page-sized BMP cost on their own. Rendering (text, scaling, frames,
// compositing) should add at most as much again. Run with --benchmark_repetitions for medians.
// And the cost of a template's size: pages of 300 and 3000 small buttons, whose time ratio
// should stay near the tenfold of their sizes.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/Profile.h>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <filesystem>
#include <string>
#include <vector>

#include "renderer/OutputName.h"
#include "renderer/BmpWriter.h"
#include "renderer/cairo/PixbufPicture.h"

namespace {

namespace fs = std::filesystem;
using namespace tolvex::render;

constexpr int kButtons = 12;

// A picture with some texture, so that decoding it is real work.
void WritePicture(const std::string& path, int width, int height, int seed, const char* type) {
  GdkPixbuf* p = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
  guint8* px = gdk_pixbuf_get_pixels(p);
  const int stride = gdk_pixbuf_get_rowstride(p);
  unsigned noise = 12345u + seed;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      noise = noise * 1103515245u + 12345u;
      guint8* q = px + y * stride + x * 3;
      q[0] = static_cast<guint8>(x * 255 / width);
      q[1] = static_cast<guint8>(y * 255 / height + seed * 20);
      q[2] = static_cast<guint8>((noise >> 16) & 0x3f);
    }
  }
  gdk_pixbuf_save(p, path.c_str(), type, nullptr, nullptr);
  g_object_unref(p);
}

// A PAL page: a JPEG background, twelve PNG thumbnails in a 4 x 3 grid, framed and titled.
struct Page {
  Page() {
    folder = (fs::temp_directory_path() / ("tolvex-bench-" + std::to_string(getpid()))).string();
    fs::create_directories(folder);
    templatePath = folder + "/menu.ini";
    const char* t = templatePath.c_str();
    auto set = [&](const char* section, const std::string& key, const std::string& value) {
      WritePrivateProfileStringA(section, key.c_str(), value.c_str(), t);
    };
    WritePicture(folder + "/background.jpg", 720, 576, 0, "jpeg");
    pictures.push_back(folder + "/background.jpg");
    set("Background", "NTSC", "FALSE");
    set("Background", "BackgroundBmp", "background.jpg");
    set("Background", "BackgroundTitle", "Holiday 2024");
    set("Background", "BackgroundTitlePosition_x", "220");
    set("Background", "BackgroundTitlePosition_y", "20");
    set("Background", "BackgroundTitleFont_Size", "44");
    set("Background", "BackgroundTitleFont_Bold", "TRUE");
    set("Background", "CurrentNumberOfButton", std::to_string(kButtons));
    const std::string layout = "NumOfButton" + std::to_string(kButtons);
    for (int i = 0; i < kButtons; ++i) {
      const std::string n = std::to_string(i);
      const std::string name = "thumb" + n + ".png";
      WritePicture(folder + "/" + name, 320, 240, i + 1, "png");
      pictures.push_back(folder + "/" + name);
      const int left = 40 + (i % 4) * 165, top = 100 + (i / 4) * 150;
      set(layout.c_str(), "ButtonPosition" + n + "_left", std::to_string(left));
      set(layout.c_str(), "ButtonPosition" + n + "_right", std::to_string(left + 150));
      set(layout.c_str(), "ButtonPosition" + n + "_top", std::to_string(top));
      set(layout.c_str(), "ButtonPosition" + n + "_bottom", std::to_string(top + 110));
      set(layout.c_str(), "ButtonFrameThickness" + n, "4");
      set(layout.c_str(), "ButtonFrame_R" + n, "250");
      set(layout.c_str(), "ButtonFrame_G" + n, "220");
      set(layout.c_str(), "ButtonFrame_B" + n, "120");
      set(layout.c_str(), "ButtonBmp" + n, name);
      set(layout.c_str(), "ButtonTitle" + n, "Chapter " + std::to_string(i + 1));
      set(layout.c_str(), "ButtonTitlePosition" + n + "_x", std::to_string(left + 20));
      set(layout.c_str(), "ButtonTitlePosition" + n + "_y", std::to_string(top + 112));
      set(layout.c_str(), "ButtonTitleFont_Size" + n, "20");
    }
  }
  ~Page() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  std::string folder;
  std::string templatePath;
  std::vector<std::string> pictures;
};

Page& ThePage() {
  static Page page;
  return page;
}

void BM_RenderMenu(benchmark::State& state) {
  std::string path = ThePage().templatePath;
  for (auto _ : state) {
    if (!CreateMenuBmp(path.data())) state.SkipWithError("CreateMenuBmp failed");
  }
}

void BM_RenderMask(benchmark::State& state) {
  std::string path = ThePage().templatePath;
  for (auto _ : state) {
    if (!CreateMaskMenuBmp(path.data())) state.SkipWithError("CreateMaskMenuBmp failed");
  }
}

// The floor: the same pictures decoded, and a page-sized BMP encoded and written the same way.
void BM_Floor(benchmark::State& state) {
  const Page& page = ThePage();
  std::vector<uint8_t> canvas(720 * 576 * 4, 0x40);
  for (auto _ : state) {
    for (const std::string& path : page.pictures) {
      PixbufPtr picture;
      if (LoadPicture(path, &picture) != Status::kOk) state.SkipWithError("decoding failed");
      benchmark::DoNotOptimize(picture.get());
    }
    const std::string bytes =
        EncodeBmp24(PixelRows{720, 576, canvas.data(), 720 * 4, PixelLayout::kCairo});
    if (WriteOutput(page.folder + "/floor.bmp", bytes) != Status::kOk) {
      state.SkipWithError("writing failed");
    }
  }
}

// A page of `count` small titled buttons, written as text at once (key by key would take long).
std::string ButtonsTemplate(int count) {
  const std::string path = ThePage().folder + "/buttons" + std::to_string(count) + ".ini";
  std::ofstream out(path);
  out << "[Background]\nNTSC=TRUE\nCurrentNumberOfButton=" << count << "\n[NumOfButton" << count
      << "]\n";
  for (int i = 0; i < count; ++i) {
    const int left = i * 7 % 700, top = i * 13 % 460;
    out << "ButtonPosition" << i << "_left=" << left << "\nButtonPosition" << i
        << "_right=" << left + 10 << "\nButtonPosition" << i << "_top=" << top
        << "\nButtonPosition" << i << "_bottom=" << top + 10 << "\nButtonFrameThickness" << i
        << "=2\nButtonFrame_R" << i << "=255\nButtonTitle" << i << "=" << i << "\n";
  }
  return path;
}

void BM_RenderButtons(benchmark::State& state) {
  std::string path = ButtonsTemplate(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    if (!CreateMenuBmp(path.data())) state.SkipWithError("CreateMenuBmp failed");
  }
}

BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_RenderMenu)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_RenderMask)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_RenderButtons)->Arg(300)->Arg(3000)->Unit(benchmark::kMillisecond)->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace

BENCHMARK_MAIN();
