// Refusing an output that is one of the render's inputs or the other renderer's output.
#include "renderer/OutputGuard.h"

#include <sys/stat.h>

#include <cerrno>
#include <optional>

#include "platform/Os.h"
#include "platform/posix/PosixPaths.h"
#include "renderer/Failure.h"

namespace tolvex::render {
namespace {

// What a path names: an existing file by device and inode; a file yet to be made by its
// folder's device and inode and its own name.
struct Identity {
  dev_t device = 0;
  ino_t inode = 0;
  std::string name;  // empty for an existing file

  bool operator==(const Identity& o) const {
    return device == o.device && inode == o.inode && name == o.name;
  }
};

std::optional<Identity> Identify(const std::string& path) {
  std::string target;
  if (!platform::os::ResolveLinks(path, &target).ok()) return std::nullopt;
  struct stat info {};
  if (stat(target.c_str(), &info) == 0) return Identity{info.st_dev, info.st_ino, std::string()};
  if (errno != ENOENT) return std::nullopt;
  if (stat(platform::posix::FolderOf(target).c_str(), &info) != 0) return std::nullopt;
  return Identity{info.st_dev, info.st_ino, platform::posix::BaseNameOf(target)};
}

}  // namespace

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
