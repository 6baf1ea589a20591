// Scratch and staged copies of template files (see TemplateCopy.h).
#include "tools/TemplateCopy.h"

#include "tools/ToolError.h"

#include <tolvex/MenuTemplate.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace menutool {
namespace fs = std::filesystem;
namespace {

std::string ErrnoText() { return std::strerror(errno); }

// CopyTemplateFile reports nothing, so the copy is checked by its size.
void CopyThroughLibrary(const std::string& from, const std::string& to,
                        const std::string& subject) {
  CMenuTemplate(CString(from.c_str())).CopyTemplateFile(CString(to.c_str()));
  std::error_code e1, e2;
  if (!fs::exists(to) || fs::file_size(from, e1) != fs::file_size(to, e2) || e1 || e2)
    throw ToolError(subject, "cannot copy the template to " + to);
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

ScratchCopy::ScratchCopy(const TemplatePath& original) {
  original.RequireReadable();
  std::string pattern = (fs::temp_directory_path() / "menutemplate.XXXXXX").string();
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  if (!mkdtemp(name.data()))
    throw ToolError(original.given(), "cannot make a temporary folder: " + ErrnoText());
  m_folder = name.data();
  m_path = m_folder + "/" + fs::path(original.library()).filename().string();
  try {
    CopyThroughLibrary(original.library(), m_path, original.given());
  } catch (...) {
    fs::remove_all(m_folder);
    throw;
  }
}

ScratchCopy::~ScratchCopy() {
  std::error_code ignored;
  fs::remove_all(m_folder, ignored);
}

StagedEdit::StagedEdit(const TemplatePath& target, bool fromOriginal, bool replace)
    : m_target(target), m_final(target.library()), m_fromOriginal(fromOriginal) {
  struct stat st {};
  bool exists = stat(m_final.c_str(), &st) == 0;
  if (fromOriginal) {
    target.RequireWritable();
  } else if (exists && !replace) {
    throw ToolError(target.given(), "already exists (use --force to replace it)");
  } else if (exists && !S_ISREG(st.st_mode)) {
    throw ToolError(target.given(), "not a regular file");
  }
  // Edit the file a symbolic link points to, so that the link stays a link.
  if (exists) m_final = fs::canonical(m_final).string();
  mode_t mask = umask(0);
  umask(mask);
  m_mode = exists ? (st.st_mode & 07777) : (0666 & ~mask);

  fs::path final(m_final);
  std::string pattern =
      (final.parent_path() / ("." + final.filename().string() + ".XXXXXX")).string();
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  int fd = mkstemp(name.data());
  if (fd < 0) throw ToolError(target.given(), "cannot write in its folder: " + ErrnoText());
  close(fd);
  m_staged = name.data();
  if (fromOriginal) {
    try {
      m_copiedBytes = ReadBytes(m_final);
      CopyThroughLibrary(m_final, m_staged, target.given());
      if (ReadBytes(m_staged) != m_copiedBytes) throw ChangedMeanwhile{};
    } catch (...) {
      unlink(m_staged.c_str());
      throw;
    }
  }
}

StagedEdit::~StagedEdit() {
  if (!m_committed) unlink(m_staged.c_str());
}

void StagedEdit::Commit() {
  // Flush the staged bytes before the rename makes them the file.
  int fd = open(m_staged.c_str(), O_RDONLY);
  bool ok = fd >= 0 && fsync(fd) == 0;
  if (fd >= 0) close(fd);
  // A writer that changes the file after this check and before the rename, a window of
  // microseconds, can still lose its change; one that changed it during our edit does not.
  if (ok && m_fromOriginal && ReadBytes(m_final) != m_copiedBytes) throw ChangedMeanwhile{};
  if (!ok || chmod(m_staged.c_str(), m_mode) != 0 || rename(m_staged.c_str(), m_final.c_str()) != 0)
    throw ToolError(m_target.given(), "cannot replace the file: " + ErrnoText());
  m_committed = true;
}

}  // namespace menutool
