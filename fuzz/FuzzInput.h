// What every fuzz target shares: a reader that turns the fuzzer's bytes into small decisions
// and length-prefixed texts (so that seeds can be written by hand or by fuzz/MakeSeeds), a
// scratch folder in memory for the files a target works on, and a loud stop for a broken
// invariant. One fuzzing process runs one input at a time; nothing here is thread-safe.
#ifndef TOLVEX_FUZZ_FUZZINPUT_H
#define TOLVEX_FUZZ_FUZZINPUT_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace tolvex::fuzz {

// The input, consumed from the front. Past its end every byte reads as 0 and texts are empty,
// so any input decodes to something.
class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size)
      : m_rest(reinterpret_cast<const char*>(data), size) {}

  uint8_t Byte() {
    if (m_rest.empty()) return 0;
    uint8_t byte = static_cast<uint8_t>(m_rest.front());
    m_rest.remove_prefix(1);
    return byte;
  }
  // A text of up to 254 bytes after its length byte; the length 255 stands for NULL.
  std::optional<std::string> Text() {
    uint8_t length = Byte();
    if (length == kNullText) return std::nullopt;
    std::string_view text = m_rest.substr(0, length);
    m_rest.remove_prefix(text.size());
    return std::string(text);
  }
  std::string Rest() {
    std::string rest(m_rest);
    m_rest = {};
    return rest;
  }

  static constexpr uint8_t kNullText = 0xFF;

 private:
  std::string_view m_rest;
};

// Writes the encoding FuzzInput::Text reads, for seed makers.
inline void AppendText(std::string& out, const std::optional<std::string>& text) {
  if (!text) {
    out.push_back(static_cast<char>(FuzzInput::kNullText));
    return;
  }
  std::string cut = text->substr(0, FuzzInput::kNullText - 1);
  out.push_back(static_cast<char>(cut.size()));
  out += cut;
}

// A folder made once per process, in memory (/dev/shm) where there is one, so that the fsync
// of every atomic replace costs nothing.
inline const std::string& ScratchFolder() {
  static const std::string folder = [] {
    for (const char* base : {"/dev/shm", "/tmp"}) {
      std::string pattern = std::string(base) + "/tolvex-fuzz-XXXXXX";
      if (mkdtemp(pattern.data())) return pattern;
    }
    std::abort();
  }();
  return folder;
}

inline void WriteBytes(const std::string& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The file's bytes, or nullopt when it cannot be opened.
inline std::optional<std::string> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// A broken invariant: libFuzzer saves the input that led here as a crash.
[[noreturn]] inline void Fail(const char* what) {
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

inline void Check(bool condition, const char* what) {
  if (!condition) Fail(what);
}

}  // namespace tolvex::fuzz

#endif  // TOLVEX_FUZZ_FUZZINPUT_H
