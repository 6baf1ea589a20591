// Refusing an output that is one of the render's inputs, the other renderer's output, or a
// file the renderer did not make.
#include "renderer/OutputGuard.h"

#include <cstdint>
#include <optional>

#include "platform/Os.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

namespace os = platform::os;
using platform::StatusCode;

// What a path names: an existing file by device and inode; a file yet to be made by its
// folder's device and inode and its own name.
struct Identity {
  uint64_t device = 0;
  uint64_t inode = 0;
  std::string name;  // empty for an existing file

  bool operator==(const Identity& o) const {
    return device == o.device && inode == o.inode && name == o.name;
  }
};

std::optional<Identity> Identify(const std::string& path) {
  std::string target;
  if (!os::ResolveLinks(path, &target).ok()) return std::nullopt;
  os::FileStamp stamp;
  const platform::Status stamped = os::StampFile(target, &stamp);
  if (stamped.ok()) return Identity{stamp.device, stamp.inode, std::string()};
  if (stamped.code() != StatusCode::kNotFound) return std::nullopt;
  os::FileIdentity folder;
  if (!os::IdentifyFile(target, &folder).ok()) return std::nullopt;
  return Identity{folder.device, folder.inode, folder.name};
}

uint32_t Little(const unsigned char* at, int bytes) {
  uint32_t value = 0;
  for (int i = bytes - 1; i >= 0; --i) value = (value << 8) | at[i];
  return value;
}

// Whether the `size` bytes of a file starting with `header` (54 bytes) are a BMP as
// EncodeBmp24 writes it: the file and info headers, 24 bits a pixel, no compression, rows
// padded to four bytes, and nothing after them.
bool IsOurBmp(const unsigned char* header, uint64_t size) {
  if (header[0] != 'B' || header[1] != 'M' || Little(header + 2, 4) != size) return false;
  if (Little(header + 10, 4) != 54 || Little(header + 14, 4) != 40) return false;
  const auto width = static_cast<int32_t>(Little(header + 18, 4));
  const auto height = static_cast<int32_t>(Little(header + 22, 4));
  if (width <= 0 || height == 0 || height == INT32_MIN) return false;
  if (Little(header + 26, 2) != 1 || Little(header + 28, 2) != 24 || Little(header + 30, 4) != 0)
    return false;
  const uint64_t rowBytes = (static_cast<uint64_t>(width) * 3 + 3) & ~uint64_t{3};
  return size == 54 + rowBytes * static_cast<uint64_t>(height < 0 ? -int64_t{height} : height);
}

}  // namespace

Status CheckOutputIsOurs(const std::string& output) {
  std::string target;
  if (!os::ResolveLinks(output, &target).ok()) return Status::kOk;
  std::string header;
  os::FileStamp stamp;
  const platform::Status read = os::ReadFileStart(target, 54, &header, &stamp);
  // Not there yet, or no regular file: the write makes it or says why it cannot.
  if (read.code() == StatusCode::kNotFound || read.code() == StatusCode::kIsDirectory ||
      read.code() == StatusCode::kInvalidArgument) {
    return Status::kOk;
  }
  const std::string refused = "refusing to replace output " + output + ": ";
  if (!read.ok()) {
    return FailErrno(Status::kOutputUnwritable, refused + "cannot look at it",
                     platform::ErrnoFromStatus(read));
  }
  if (stamp.size == 0) return Status::kOk;  // nothing in it to lose
  if (header.size() != 54 ||
      !IsOurBmp(reinterpret_cast<const unsigned char*>(header.data()), stamp.size)) {
    return Fail(Status::kOutputUnwritable,
                refused + "the file there is not a BMP picture the renderer made");
  }
  return Status::kOk;
}

Status CheckOutputIsNoInput(const std::string& output, const TemplateFile& file,
                            const Page& page, const std::string& otherOutput) {
  const auto self = Identify(output);
  if (!self) return Status::kOk;  // the write itself will say what is wrong with it
  const std::string refused = "refusing to write output " + output;
  if (*self == Identity{file.device(), file.inode(), std::string()}) {
    return Fail(Status::kOutputUnwritable, refused + ": it is the template itself");
  }
  std::vector<std::string> pictures{page.background};
  for (const Button& button : page.buttons) {
    pictures.push_back(button.picture);
    pictures.push_back(button.framePicture);
  }
  for (const std::string& picture : pictures) {
    if (picture.empty()) continue;
    if (Identify(picture) == self) {
      return Fail(Status::kOutputUnwritable, refused + ": it is the picture " + picture);
    }
  }
  if (Identify(otherOutput) == self) {
    return Fail(Status::kOutputUnwritable,
                refused + ": it is also the other output " + otherOutput);
  }
  return Status::kOk;
}

}  // namespace tolvex::render
