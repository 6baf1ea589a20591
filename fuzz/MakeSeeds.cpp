// Writes the seed corpora of the fuzz targets from the fixtures of the test suite: every golden
// case of the profile functions becomes one input of the profile target (its file and calls),
// and every template below becomes an input of the renderer and show targets, with the
// example pictures; the documents below are the apply target's, among them deep and huge ones. Usage: make_seeds <source folder> <corpus folder>; one subfolder per target.
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/FuzzInput.h"
#include "platform/CaseFile.h"

namespace {

namespace fs = std::filesystem;
using tolvex::fuzz::AppendText;

uint8_t SizeCode(const std::string& size) {
  const unsigned long n = std::stoul(size);
  return static_cast<uint8_t>(n < 200 ? n : std::min(255ul, 200 + (n - 200) / 40));
}

// One input of the profile target, in the layout ProfileFuzzer.cpp reads.
std::string ProfileSeed(const tolvex::test::ProfileCase& c) {
  std::string seed;
  const size_t calls = std::min<size_t>(c.calls.size(), 15);
  seed.push_back(static_cast<char>((c.before ? 0 : 0x80) | calls));
  for (size_t i = 0; i < calls; ++i) {
    const auto& args = c.calls[i].args;
    auto arg = [&](size_t n) { return n < args.size() ? args[n] : std::nullopt; };
    const bool write = arg(0) == std::optional<std::string>("write");
    seed.push_back(write ? 1 : 0);
    AppendText(seed, arg(1));
    AppendText(seed, arg(2));
    AppendText(seed, arg(3));
    seed.push_back(write ? 0 : static_cast<char>(SizeCode(arg(4).value_or("80"))));
  }
  if (c.before) seed += *c.before;
  return seed;
}

// Templates of the kinds the tool writes, naming the fuzzed picture "p".
const std::vector<std::string> kTemplates = {
    "[Background]\r\nNTSC=TRUE\r\nBackgroundBmp=p\r\nCurrentNumberOfButton=2\r\n"
    "BackgroundTitle=Holidays\r\nBackgroundTitlePosition_x=40\r\nBackgroundTitlePosition_y=30\r\n"
    "BackgroundTitleFont_Name=DejaVu Sans\r\nBackgroundTitleFont_Size=24\r\n"
    "BackgroundTitleFont_Bold=TRUE\r\nBackgroundTitleFont_R=255\r\n"
    "[NumOfButton2]\r\nButtonPosition0_left=10\r\nButtonPosition0_right=110\r\n"
    "ButtonPosition0_top=100\r\nButtonPosition0_bottom=160\r\nButtonFrameThickness0=3\r\n"
    "ButtonFrame_R0=200\r\nButtonBmp0=p\r\nButtonTitle0=Beach\r\nButtonTitlePosition0_x=20\r\n"
    "ButtonTitlePosition0_y=170\r\nButtonPosition1_left=200\r\nButtonPosition1_right=300\r\n"
    "ButtonPosition1_top=100\r\nButtonPosition1_bottom=160\r\nButtonFrameBmp1=p\r\n",
    "[Background]\r\nNTSC=FALSE\r\nAddPrevButton=TRUE\r\nAddNextButton=TRUE\r\n"
    "[PrevButton]\r\nButtonPrevButtonPosition_left=5\r\nButtonPrevButtonPosition_right=60\r\n"
    "ButtonPrevButtonPosition_top=500\r\nButtonPrevButtonPosition_bottom=560\r\n"
    "ButtonPrevBmp=p\r\nButtonPrevFrameThickness=2\r\n"
    "[NextButton]\r\nButtonNextButtonPosition_left=600\r\nButtonNextButtonPosition_right=700\r\n"
    "ButtonNextButtonPosition_top=500\r\nButtonNextButtonPosition_bottom=560\r\n"
    "ButtonNextFrameBmp=p\r\n",
    "[Background]\r\nBackgroundBmp=p\r\nOutputBmp=out.bmp\r\nOutMask=out_mask.bmp\r\n",
};

// A 2x2 24-bit BMP.
std::string TinyBmp() {
  std::string bmp = std::string("BM") + std::string(4, '\0') + std::string(4, '\0');
  auto u32 = [&](uint32_t v) {
    for (int i = 0; i < 4; ++i) bmp.push_back(static_cast<char>(v >> (8 * i)));
  };
  auto u16 = [&](uint16_t v) {
    bmp.push_back(static_cast<char>(v));
    bmp.push_back(static_cast<char>(v >> 8));
  };
  u32(54);
  u32(40), u32(2), u32(2), u16(1), u16(24), u32(0), u32(16), u32(2835), u32(2835), u32(0), u32(0);
  bmp += std::string("\xff\x00\x00\x00\xff\x00\x00\x00", 8);
  bmp += std::string("\x00\x00\xff\xff\xff\xff\x00\x00", 8);
  const uint32_t total = static_cast<uint32_t>(bmp.size());
  for (int i = 0; i < 4; ++i) bmp[2 + i] = static_cast<char>(total >> (8 * i));
  return bmp;
}

// One input of the renderer target: the picture's length (2 bytes, little-endian), the
// picture, then the template text.
std::string RenderSeed(const std::string& picture, const std::string& text) {
  std::string seed;
  seed.push_back(static_cast<char>(picture.size() & 0xFF));
  seed.push_back(static_cast<char>((picture.size() >> 8) & 0xFF));
  return seed + picture + text;
}

// Documents for apply: a page's worth of changes, parts of one, and hostile ones.
std::vector<std::string> ApplySeeds() {
  std::vector<std::string> seeds = {
      R"({"file":"menu.ini","layoutInUse":2,"page":{"mode":"ntsc","background":"bg.png",)"
      R"("music":"","buttons.max":3,"buttons.current":2,"output":"menu.bmp","mask":"menu_mask.bmp",)"
      R"("title":"Holidays","title.position":{"x":72,"y":48},"title.font.name":"DejaVu Sans",)"
      R"("title.font.size":24,"title.font.rgb":{"red":255,"green":255,"blue":255},)"
      R"("title.font.style":{"italic":false,"bold":true,"underline":false}},)"
      R"("prev":{"enabled":true,"rect":{"left":72,"top":380,"right":152,"bottom":424},)"
      R"("picture":"","frame.picture":"","frame.size":2,"navinfo":{"r":1,"c":1}},)"
      R"("next":{"enabled":false},"layouts":[{"count":2,"current":true,"section":"NumOfButton2",)"
      R"("buttons":[{"button":1,"index":2,"rect":{"left":100,"top":100,"right":260,"bottom":190},)"
      R"("title":"Beach","title.position":{"x":100,"y":196},"frame.rgb":{"red":200,"green":0,)"
      R"("blue":0},"navinfo":{"r":1,"c":1}},{"button":2,"title":"Town"}]},)"
      R"({"count":3,"buttons":[{"index":4,"rect":{"right":600}}]}]})",
      R"({"page":{"title":"€ ÿ ","music":null}})",
      R"({"layouts":[{"count":-1,"buttons":[{"index":4294967295,"title":"x"}]}]})",
      R"({"page":{"ti[31mtle":1,"title.font.name":"]0;x"}})",
  };
  const std::string deep(100000, '[');
  seeds.push_back(R"({"page":{"title":)" + deep + std::string(100000, ']') + "}}");
  seeds.push_back(R"({"layouts":[{"count":2,"buttons":[{"button":1,"rect":)" + deep);
  std::string elements = "[0";
  for (int i = 1; i < 50000; ++i) elements += ",0";
  seeds.push_back(R"({"page":{"title":)" + elements + "]}}");
  seeds.push_back(R"({"page":{"title":")" + std::string(200000, 'x') + R"("}})");
  seeds.push_back(R"({"page":{")" + std::string(100000, 'n') + R"(":1}})");
  return seeds;
}

void Write(const fs::path& folder, const std::string& name, const std::string& bytes) {
  fs::create_directories(folder);
  tolvex::fuzz::WriteBytes((folder / name).string(), bytes);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_seeds <source folder> <corpus folder>\n");
    return 2;
  }
  const fs::path source = argv[1], out = argv[2];
  for (const auto& c : tolvex::test::LoadCases((source / "tests/data/profile").string())) {
    Write(out / "profile", c.name, ProfileSeed(c));
    if (c.before) Write(out / "show", c.name, *c.before);
  }
  std::vector<std::string> pictures = {TinyBmp()};
  if (auto png = tolvex::fuzz::ReadBytes((source / "examples/background.png").string()))
    pictures.push_back(*png);
  for (size_t t = 0; t < kTemplates.size(); ++t) {
    Write(out / "show", "template" + std::to_string(t), kTemplates[t]);
    for (size_t p = 0; p < pictures.size(); ++p)
      Write(out / "render", "template" + std::to_string(t) + "-picture" + std::to_string(p),
            RenderSeed(pictures[p], kTemplates[t]));
  }
  const std::vector<std::string> documents = ApplySeeds();
  for (size_t d = 0; d < documents.size(); ++d)
    Write(out / "apply", "document" + std::to_string(d), documents[d]);
  int n = 0;
  for (const char* word : {"12", "-5", "2147483647", "-2147483648", "4294967295", "yes", "no",
                           "true", "off", "ntsc", "PAL", "Holidays", "12abc", "+3", ""}) {
    for (char kind = 0; kind < 5; ++kind)
      Write(out / "values", "word" + std::to_string(n++), std::string(1, kind) + word);
  }
  return 0;
}
