// Fuzz target of the rendering libraries: any template text with one small picture beside it
// (named "p" where the template uses it), rendered by CreateMenuBmp and CreateMaskMenuBmp.
// Each call must return, 0 or 1, without a sanitizer report; the bounds of time and memory
// are the fuzzer's -timeout and -rss_limit_mb (see scripts/fuzz.sh).
//
// Input: the picture's length (2 bytes, little-endian), the picture, then the template text.
// Texts with '/' or '\' are skipped: every file the renderer reads or writes stays in the
// scratch folder.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fuzz/FuzzInput.h"

namespace {

const std::string& RenderFolder() {
  static const std::string folder = [] {
    std::string path = tolvex::fuzz::ScratchFolder() + "/render";
    // Bare names in templates resolve here too, never in the user's profile folder.
    setenv("TOLVEX_PROFILE_DIR", path.c_str(), 1);
    return path;
  }();
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tolvex::fuzz;
  FuzzInput input(data, size);
  size_t pictureSize = input.Byte();
  pictureSize |= static_cast<size_t>(input.Byte()) << 8;
  std::string rest = input.Rest();
  const std::string picture = rest.substr(0, pictureSize);
  const std::string text = rest.substr(picture.size());
  if (text.find_first_of("/\\") != std::string::npos) return -1;  // not added to the corpus

  const std::string& folder = RenderFolder();
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  WriteBytes(folder + "/p", picture);
  std::string path = folder + "/t.ini";
  WriteBytes(path, text);

  const int menu = CreateMenuBmp(path.data());
  Check(menu == 0 || menu == 1, "CreateMenuBmp returned neither 0 nor 1");
  const int mask = CreateMaskMenuBmp(path.data());
  Check(mask == 0 || mask == 1, "CreateMaskMenuBmp returned neither 0 nor 1");
  return 0;
}
