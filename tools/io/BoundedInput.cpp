// Bounded reading of a user's document (see BoundedInput.h).
#include "tools/io/BoundedInput.h"

#include "tools/cli/ToolError.h"
#include "tools/io/Reason.h"

#include "platform/Os.h"

#include <iostream>

namespace menutool {
namespace {

namespace os = tolvex::platform::os;
using tolvex::platform::StatusCode;

// Why a file of this kind is no document, or nullptr for a regular file.
const char* KindProblem(os::PathKind kind) {
  switch (kind) {
    case os::PathKind::kFile: return nullptr;
    case os::PathKind::kFolder: return "is a folder, not a file";
    case os::PathKind::kPipe:
      return "is a named pipe (FIFO), not a file (pipe it to '-' instead)";
    case os::PathKind::kDevice: return "is a device, not a file";
    case os::PathKind::kOther: break;
  }
  return "is not a regular file";
}

std::string TooMuch(std::size_t limit, const char* what) {
  return std::string("holds more than the ") + SizeText(limit) + " that " + what + " may have";
}

// Reads the standard input to its end, or until it has given more than `limit` bytes.
std::string ReadStandardInput(std::size_t limit, const char* what) {
  const std::string name = "the standard input";
  std::string bytes;
  char chunk[1 << 16];
  std::streambuf* input = std::cin.rdbuf();
  for (;;) {
    const std::streamsize got = input->sgetn(chunk, sizeof chunk);
    if (got <= 0) return bytes;
    if (bytes.size() + static_cast<std::size_t>(got) > limit) throw ToolError(name, TooMuch(limit, what));
    bytes.append(chunk, static_cast<std::size_t>(got));
  }
}

}  // namespace

std::string ReadBoundedInput(const std::string& name, std::size_t limit, const char* what) {
  if (name == "-") return ReadStandardInput(limit, what);
  const std::string cannot = std::string("cannot read ") + what + ": ";
  os::PathInfo info;
  const auto looked = os::LookAt(name, &info);
  if (!looked.ok()) throw ToolError(name, cannot + Reason(looked));
  if (const char* problem = KindProblem(info.kind)) throw ToolError(name, problem);
  if (info.size > limit)
    throw ToolError(name, "is " + SizeText(info.size) + ", more than the " + SizeText(limit) +
                              " that " + what + " may have");
  // The read opens the name without waiting and takes only a regular file, should the name have
  // been swapped for a FIFO or a device since the look.
  std::string bytes;
  const auto read = os::ReadWholeFile(name, &bytes, nullptr, limit);
  if (read.code() == StatusCode::kNoSpace) throw ToolError(name, TooMuch(limit, what));
  if (read.code() == StatusCode::kInvalidArgument) throw ToolError(name, "is not a regular file");
  if (read.code() == StatusCode::kIsDirectory) throw ToolError(name, KindProblem(os::PathKind::kFolder));
  if (!read.ok()) throw ToolError(name, cannot + Reason(read));
  return bytes;
}

}  // namespace menutool
