// Fuzz target of the profile functions: any file bytes, then a sequence of reads, writes and
// removals through GetPrivateProfileStringA and WritePrivateProfileStringA on a real file,
// some of them with a failing OS primitive. Checked after every call: reads stay inside the
// buffer and end in a NUL; a failed write leaves the file byte for byte; a successful one gives
// exactly the bytes the in-memory editor computes, changes one line (or adds lines at one
// place), reads back the value written and leaves every other value reading as before. The
// same calls are then made again from the same file inside an edit, leaving out the writes that
// failed: every read in the edit must give what it gave outside, and the commit the same bytes.
//
// Input: one byte (bit 7: the file is missing, bits 0-3: the number of calls), the calls, then
// the file's bytes. A call is one byte (bit 0: write), then for a read the section, key and
// default texts and a size byte, for a write the section, key and value texts and a fault byte
// (bit 0: fail a primitive; bits 1-3: which, bits 4-5: its nth call, bits 6-7: the errno).
#include <tolvex/Profile.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/FuzzInput.h"
#include "platform/FaultInjection.h"
#include "reference/IniModel.h"

namespace tolvex::fuzz {
namespace {

using reference::IniDocument;
using Text = std::optional<std::string>;

struct FileState {
  bool exists = false;
  std::string bytes;
  bool operator==(const FileState& other) const {
    return exists == other.exists && bytes == other.bytes;
  }
};

const std::string& FilePath() {
  static const std::string path = ScratchFolder() + "/profile.ini";
  return path;
}

void Store(const FileState& state) {
  if (state.exists) {
    WriteBytes(FilePath(), state.bytes);
  } else {
    std::remove(FilePath().c_str());
  }
}

FileState Load() {
  std::optional<std::string> bytes = ReadBytes(FilePath());
  return bytes ? FileState{true, *bytes} : FileState{};
}

const char* Ptr(const Text& text) { return text ? text->c_str() : nullptr; }

// A text as the C functions see it: up to its first NUL.
Text CText(FuzzInput& input) {
  Text text = input.Text();
  if (text) text->resize(std::strlen(text->c_str()));
  return text;
}

uint32_t BufferSize(uint8_t code) { return code < 200 ? code : 200 + (code - 200) * 40u; }

// A read's length and text, as the caller sees them.
std::string CheckedRead(const Text& app, const Text& key, const Text& def, uint32_t size) {
  // Exactly `size` bytes, so that AddressSanitizer sees any write past the end.
  std::unique_ptr<char[]> buffer(new char[size]);
  DWORD length = GetPrivateProfileStringA(Ptr(app), Ptr(key), Ptr(def), buffer.get(), size,
                                          FilePath().c_str());
  if (size == 0) {
    Check(length == 0, "a read of size 0 returned text");
    return {};
  }
  Check(length < size, "a read returned more than the buffer holds");
  Check(buffer[length] == '\0', "a read's text does not end in NUL");
  return std::to_string(length) + ":" + std::string(buffer.get(), length);
}

// What the in-memory parser and editor say the file must hold after the write.
FileState ExpectedAfterWrite(const FileState& before, const Text& app, const Text& key,
                             const Text& value) {
  if (!app) return before;
  if (!before.exists && (!key || !value)) return {true, ""};
  IniDocument document(before.bytes);
  std::optional<std::string> changed;
  if (!key) {
    changed = reference::RemoveSection(document, before.bytes, *app);
  } else if (!value) {
    changed = reference::RemoveKey(document, before.bytes, *app, *key);
  } else {
    changed = reference::SetValue(document, before.bytes, *app, *key, *value);
  }
  return {true, changed ? *changed : before.bytes};
}

bool HasLineBreak(const std::string& text) { return text.find_first_of("\r\n") != std::string::npos; }

// Names and values that keep to one line and mean what they say, so that a write of them must
// read back and must not shadow anything else.
bool IsPlainWrite(const Text& app, const Text& key, const Text& value) {
  if (!app || !key || !value) return false;
  if (HasLineBreak(*app) || HasLineBreak(*key) || HasLineBreak(*value)) return false;
  std::string_view name = platform::TrimBlanks(*key);
  return name.find('=') == std::string_view::npos && (name.empty() || name.front() != '[');
}

// The value as a read gives it back, or nullopt when quotes make it read otherwise.
std::optional<std::string> ReadBackOf(const std::string& value) {
  std::string_view text = platform::TrimBlanks(value);
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
      text.back() == text.front())
    return std::nullopt;
  return std::string(text);
}

std::string ReadValue(const IniDocument& document, const std::string& app,
                      const std::string& key) {
  std::vector<char> buffer(1 << 16);
  uint32_t length = reference::ReadValue(document, app.c_str(), key.c_str(), "\x01", buffer.data(),
                                        static_cast<uint32_t>(buffer.size()));
  return std::string(buffer.data(), length);
}

bool SameNameApartFromCase(std::string_view a, std::string_view b) {
  a = platform::TrimBlanks(a);
  b = platform::TrimBlanks(b);
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (fold(a[i]) != fold(b[i])) return false;
  }
  return true;
}

// The bytes differ in one run only, and for a set of a value that run lies within one line of
// the old file (or is a pure insertion): everything else is kept byte for byte.
void CheckOneSplice(const std::string& before, const std::string& after, bool isSet) {
  size_t prefix = 0;
  while (prefix < before.size() && prefix < after.size() && before[prefix] == after[prefix])
    ++prefix;
  size_t suffix = 0;
  while (suffix < before.size() - prefix && suffix < after.size() - prefix &&
         before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix])
    ++suffix;
  if (!isSet) {
    Check(prefix + suffix == after.size(), "a removal did more than remove one run of bytes");
    return;
  }
  const platform::FileText text = platform::DecodeFile(before);
  Check(prefix >= text.markBytes, "a write changed the byte order mark");
  const size_t unitBytes = text.ByteOffset(1) - text.ByteOffset(0);
  // Bytes of UTF-16 units can match across a unit boundary ("000a" then "006a" share a 00), so
  // the common prefix is cut back to whole units before the suffix is measured again.
  prefix = text.markBytes + (prefix - text.markBytes) / unitBytes * unitBytes;
  suffix = 0;
  while (suffix < before.size() - prefix && suffix < after.size() - prefix &&
         before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix])
    ++suffix;
  if (prefix + suffix == before.size()) return;  // a pure insertion
  const size_t first = (prefix - text.markBytes) / unitBytes;
  const size_t last = std::min(text.units.size(),
                               (before.size() - suffix - text.markBytes + unitBytes - 1) / unitBytes);
  for (size_t i = first; i < last; ++i)
    Check(text.units[i] != '\r' && text.units[i] != '\n', "a write changed more than one line");
}

void CheckOtherValuesKept(const FileState& before, const FileState& after, const std::string& app,
                          const std::string& key) {
  const IniDocument oldDocument(before.bytes), newDocument(after.bytes);
  for (const reference::IniSection& section : oldDocument.sections()) {
    const std::string sectionName = oldDocument.Ansi(section.name);
    for (size_t i = section.firstLine; i < section.endLine; ++i) {
      const platform::IniLine& line = oldDocument.lines()[i];
      if (line.isHeader || line.dropped) continue;
      const std::string name = oldDocument.Ansi(line.name);
      if (SameNameApartFromCase(sectionName, app) && SameNameApartFromCase(name, key)) continue;
      Check(ReadValue(oldDocument, sectionName, name) == ReadValue(newDocument, sectionName, name),
            "a write changed another value");
    }
  }
}

void PlanFault(uint8_t fault) {
  if ((fault & 1) == 0) return;
  static const int kErrors[] = {EIO, ENOSPC, EACCES, EINTR};
  platform::FailNthCall(static_cast<platform::Primitive>((fault >> 1) % 6), 1 + ((fault >> 4) & 3),
                        kErrors[fault >> 6]);
}

// Whether the write succeeded.
bool CheckedWrite(FileState& state, const Text& app, const Text& key, const Text& value,
                  uint8_t fault) {
  const FileState expected = ExpectedAfterWrite(state, app, key, value);
  PlanFault(fault);
  const BOOL ok = WritePrivateProfileStringA(Ptr(app), Ptr(key), Ptr(value), FilePath().c_str());
  platform::ClearFaults();
  const FileState actual = Load();
  if (!ok) {
    Check(actual == state, "a failed write changed the file");
    Check((fault & 1) || (!app && (key || value)), "a write failed with nothing to make it fail");
    return false;
  }
  Check(actual == expected, "a write left other bytes than the editor computed");
  if (state.exists && key && actual.bytes != state.bytes)
    CheckOneSplice(state.bytes, actual.bytes, value.has_value());
  if (IsPlainWrite(app, key, value)) {
    if (std::optional<std::string> readBack = ReadBackOf(*value))
      Check(ReadValue(IniDocument(actual.bytes), *app, *key) == *readBack,
            "a written value does not read back");
    CheckOtherValuesKept(state, actual, *app, *key);
  }
  state = actual;
  return true;
}

}  // namespace
}  // namespace tolvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tolvex::fuzz;
  FuzzInput input(data, size);
  const uint8_t head = input.Byte();
  struct Call {
    bool write;
    Text app, key, third;
    uint8_t last;
  };
  std::vector<Call> calls;
  for (int i = 0; i < (head & 0x0F); ++i) {
    Call call;
    call.write = input.Byte() & 1;
    call.app = CText(input);
    call.key = CText(input);
    call.third = CText(input);
    call.last = input.Byte();
    calls.push_back(std::move(call));
  }
  FileState state;
  state.exists = (head & 0x80) == 0;
  if (state.exists) state.bytes = input.Rest();
  const FileState initial = state;
  Store(state);
  std::vector<std::string> outcomes;  // per call: a read's result, or whether a write worked
  for (const Call& call : calls) {
    if (call.write) {
      const bool ok = CheckedWrite(state, call.app, call.key, call.third, call.last);
      outcomes.push_back(ok ? "ok" : "");
    } else {
      outcomes.push_back(CheckedRead(call.app, call.key, call.third, BufferSize(call.last)));
    }
  }

  Store(initial);
  TolvexProfileEdit* edit = TolvexBeginProfileEdit(FilePath().c_str());
  Check(edit != nullptr, "an edit could not begin");
  for (size_t i = 0; i < calls.size(); ++i) {
    const Call& call = calls[i];
    if (!call.write) {
      Check(CheckedRead(call.app, call.key, call.third, BufferSize(call.last)) == outcomes[i],
            "a read in an edit differs from the same read outside");
    } else if (!outcomes[i].empty()) {
      Check(WritePrivateProfileStringA(Ptr(call.app), Ptr(call.key), Ptr(call.third),
                                       FilePath().c_str()) != FALSE,
            "a write in an edit failed");
    }
  }
  Check(Load() == initial, "an edit changed the file before its commit");
  Check(TolvexCommitProfileEdit(edit) != FALSE, "a commit failed");
  TolvexEndProfileEdit(edit);
  Check(Load() == state, "a committed edit left other bytes than the same writes one by one");
  return 0;
}
