// Bounded reading of a user's document (see BoundedInput.h).
#include "tools/io/BoundedInput.h"

#include "tools/cli/ToolError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace menutool {
namespace {

std::string SizeText(unsigned long long bytes) {
  if (bytes >= (1ULL << 30)) return std::to_string(bytes >> 30) + " GB";
  if (bytes >= (1ULL << 20)) return std::to_string(bytes >> 20) + " MB";
  return std::to_string(bytes) + " bytes";
}

// Why a file of this kind is no document, or nullptr for a regular file.
const char* KindProblem(mode_t mode) {
  if (S_ISREG(mode)) return nullptr;
  if (S_ISDIR(mode)) return "is a folder, not a file";
  if (S_ISFIFO(mode)) return "is a named pipe (FIFO), not a file (pipe it to '-' instead)";
  if (S_ISCHR(mode) || S_ISBLK(mode)) return "is a device, not a file";
  return "is not a regular file";
}

// Reads `fd` to its end, or until it has given more than `limit` bytes.
std::string ReadUpTo(int fd, std::size_t limit, const std::string& name, const char* what) {
  std::string bytes;
  char chunk[1 << 16];
  for (;;) {
    const ssize_t got = read(fd, chunk, sizeof chunk);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0)
      throw ToolError(name, std::string("cannot read ") + what + ": " + std::strerror(errno));
    if (got == 0) return bytes;
    if (bytes.size() + static_cast<std::size_t>(got) > limit)
      throw ToolError(name, std::string("holds more than the ") + SizeText(limit) + " that " +
                                what + " may have");
    bytes.append(chunk, static_cast<std::size_t>(got));
  }
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : m_fd(fd) {}
  ~Descriptor() {
    if (m_fd >= 0) close(m_fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd() const { return m_fd; }

 private:
  int m_fd;
};

}  // namespace

std::string ReadBoundedInput(const std::string& name, std::size_t limit, const char* what) {
  if (name == "-") return ReadUpTo(STDIN_FILENO, limit, "the standard input", what);
  const std::string cannot = std::string("cannot read ") + what + ": ";
  struct stat before {};
  if (stat(name.c_str(), &before) != 0) throw ToolError(name, cannot + std::strerror(errno));
  if (const char* problem = KindProblem(before.st_mode)) throw ToolError(name, problem);
  if (static_cast<unsigned long long>(before.st_size) > limit)
    throw ToolError(name, "is " + SizeText(static_cast<unsigned long long>(before.st_size)) +
                              ", more than the " + SizeText(limit) + " that " + what +
                              " may have");
  // O_NONBLOCK and O_NOCTTY: should the name have been swapped for a FIFO or a terminal since
  // the stat, the open neither waits nor makes it ours; the fstat then refuses it.
  Descriptor input(open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (input.fd() < 0) throw ToolError(name, cannot + std::strerror(errno));
  struct stat opened {};
  if (fstat(input.fd(), &opened) != 0) throw ToolError(name, cannot + std::strerror(errno));
  if (const char* problem = KindProblem(opened.st_mode)) throw ToolError(name, problem);
  return ReadUpTo(input.fd(), limit, name, what);
}

}  // namespace menutool
