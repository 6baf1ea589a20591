// The output folder and disc image of author, kept safe (see DiscOutput.h). Paths are compared
// after resolving symbolic links, so another spelling of a folder is the same folder.
#include "tools/author/DiscOutput.h"

#include "tools/cli/ToolError.h"
#include "tools/author/Stop.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace menutool::author {
namespace {

namespace fs = std::filesystem;

// The file that marks a folder as made by author (the finished disc and the staging folder).
constexpr char kMark[] = ".menutemplate-disc";
constexpr char kMarkText[] = "A DVD-Video folder made by menutemplate author.\n";

fs::path Absolute(const std::string& given) {
  fs::path path = fs::absolute(given).lexically_normal();
  if (path.filename().empty()) path = path.parent_path();  // "disc/" is the folder "disc"
  return path;
}

fs::path Real(const fs::path& path) {
  std::error_code error;
  fs::path real = fs::weakly_canonical(path, error);
  return error ? path : real;
}

// Whether `inner` is `outer` or lies inside it.
bool Within(const fs::path& inner, const fs::path& outer) {
  auto i = inner.begin();
  for (auto o = outer.begin(); o != outer.end(); ++o, ++i) {
    if (o->empty()) continue;
    if (i == inner.end() || *i != *o) return false;
  }
  return true;
}

bool SameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error)) return true;
  return Real(a) == Real(b);
}

// Opens `file` and takes its lock without waiting; -1 when it is missing or the lock is held.
// `held` tells the two apart.
int TryLock(const fs::path& file, bool* held) {
  *held = false;
  const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (fd < 0) return -1;
  if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
    *held = errno == EWOULDBLOCK;
    close(fd);
    return -1;
  }
  return fd;
}

bool StartsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

void Close(int* fd) {
  if (*fd >= 0) close(*fd);
  *fd = -1;
}

}  // namespace

DiscOutput::DiscOutput(const std::string& out, const std::string& iso,
                       const std::vector<std::string>& inputs, bool replace)
    : m_replace(replace) {
  if (out.empty()) throw ToolError("--out", "names no folder");
  m_out = Absolute(out);
  std::error_code error;
  const fs::file_status status = fs::symlink_status(m_out, error);
  if (fs::is_symlink(status))
    throw ToolError(out, "is a symbolic link; name the folder it points to");
  const fs::path real = Real(m_out);
  const std::string ownFolder = "; choose a folder of its own for the disc";
  if (real == real.root_path()) throw ToolError(out, "is the root folder" + ownFolder);
  if (const char* home = std::getenv("HOME"); home && *home && real == Real(home))
    throw ToolError(out, "is your home folder" + ownFolder);
  if (Within(Real(fs::current_path()), real))
    throw ToolError(out, "is the current folder or holds it" + ownFolder);
  for (const std::string& input : inputs)
    if (Within(Real(Absolute(input)), real))
      throw ToolError(out, "holds " + input + ", which the disc is made from" + ownFolder);
  if (fs::exists(status)) {
    if (!fs::is_directory(status)) throw ToolError(out, "exists and is not a folder");
    if (!fs::is_empty(m_out, error)) {
      if (!fs::exists(m_out / kMark))
        throw ToolError(out, "holds files that author did not make, so it is left as it is "
                             "(choose another --out)");
      if (!replace) throw ToolError(out, "the output folder exists (--force replaces it)");
    }
  }

  if (!iso.empty()) {
    m_iso = Absolute(iso);
    for (const std::string& input : inputs)
      if (SameFile(m_iso, Absolute(input)))
        throw ToolError(iso, "is " + input + ", which the disc is made from; the disc image "
                             "needs a name of its own");
    if (Within(Real(m_iso), real))
      throw ToolError(iso, "lies in the output folder " + out + "; put the disc image beside it");
    const fs::file_status isoStatus = fs::status(m_iso, error);
    if (fs::is_directory(isoStatus)) throw ToolError(iso, "is a folder");
    if (fs::exists(isoStatus)) {
      if (!fs::is_regular_file(isoStatus)) throw ToolError(iso, "exists and is not a file");
      if (!replace) throw ToolError(iso, "exists (--force replaces it)");
    }
    if (!fs::is_directory(m_iso.parent_path()))
      throw ToolError(iso, "its folder " + m_iso.parent_path().string() + " does not exist");
  }
  MakeStage();
  if (!m_iso.empty()) ClaimIso();
}

// The staging folder is made under a name no run looks for, marked and locked, and only then
// renamed to the name runs of this output look for: whoever sees it there sees it locked.
void DiscOutput::MakeStage() {
  const fs::path parent = m_out.parent_path();
  std::error_code error;
  fs::create_directories(parent, error);
  std::string name = (parent / ".menutemplate-new-XXXXXX").string();
  if (!mkdtemp(name.data()))
    throw ToolError(parent.string(), std::string("cannot make a folder: ") + std::strerror(errno));
  const fs::path fresh = name;
  m_stageLock = open((fresh / kMark).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (m_stageLock < 0 || flock(m_stageLock, LOCK_EX) != 0 ||
      write(m_stageLock, kMarkText, sizeof kMarkText - 1) < 0) {
    const int why = errno;
    fs::remove_all(fresh, error);
    throw ToolError(parent.string(), std::string("cannot make a folder: ") + std::strerror(why));
  }
  const std::string prefix = "." + m_out.filename().string() + ".menutemplate-";
  m_stage = parent / (prefix + fresh.filename().string().substr(sizeof ".menutemplate-new-" - 1));
  fs::rename(fresh, m_stage, error);
  if (error) {
    fs::remove_all(fresh, error);
    throw ToolError(parent.string(), "cannot make a folder: " + error.message());
  }

  // The work of other runs of this output: refused while one lives, removed when it died (its
  // lock went with it). A staging folder of a killed run before its rename is removed too.
  for (const fs::directory_entry& entry : fs::directory_iterator(parent, error)) {
    const std::string entryName = entry.path().filename().string();
    if (entry.path() == m_stage || entry.is_symlink() || !entry.is_directory()) continue;
    if (!StartsWith(entryName, prefix) && !StartsWith(entryName, ".menutemplate-new-")) continue;
    bool held = false;
    int lock = TryLock(entry.path() / kMark, &held);
    if (held && StartsWith(entryName, prefix)) {
      throw ToolError(m_out.string(), "another author run is making this disc; wait for it to "
                                      "end or choose another --out");
    }
    if (lock < 0) continue;  // not ours, or another output's live run
    std::error_code ignored;
    fs::remove_all(entry.path(), ignored);
    Close(&lock);
    m_notes.push_back("removed " + entry.path().string() + ", left by a run that was stopped");
  }
}

void DiscOutput::ClaimIso() {
  const std::string prefix = "." + m_iso.filename().string() + ".menutemplate-";
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_iso.parent_path(), error)) {
    if (!StartsWith(entry.path().filename().string(), prefix) || !entry.is_regular_file())
      continue;
    bool held = false;
    int lock = TryLock(entry.path(), &held);
    if (held)
      throw ToolError(m_iso.string(), "another author run is writing this disc image");
    if (lock < 0) continue;
    std::error_code ignored;
    fs::remove(entry.path(), ignored);
    Close(&lock);
    m_notes.push_back("removed " + entry.path().string() + ", left by a run that was stopped");
  }
  std::string name = (m_iso.parent_path() / (prefix + "XXXXXX")).string();
  m_isoLock = mkostemp(name.data(), O_CLOEXEC);
  if (m_isoLock < 0 || flock(m_isoLock, LOCK_EX) != 0)
    throw ToolError(m_iso.string(), std::string("cannot write: ") + std::strerror(errno));
  m_stagedIso = name;
}

void DiscOutput::Finish() {
  HoldStops hold;
  std::error_code error;
  if (!m_stagedIso.empty()) {
    // Without leave to replace, link() puts the image in place only if the name is still free.
    if (m_replace) fs::rename(m_stagedIso, m_iso, error);
    else if (link(m_stagedIso.c_str(), m_iso.c_str()) != 0)
      error = std::error_code(errno, std::generic_category());
    if (error)
      throw ToolError(m_iso.string(), error == std::errc::file_exists
                                          ? "exists (--force replaces it)"
                                          : "cannot write the disc image: " + error.message());
    fs::remove(m_stagedIso, error);
    m_stagedIso.clear();
  }
  fs::path old;
  if (fs::exists(fs::symlink_status(m_out, error))) {
    if (!fs::is_empty(m_out, error) && !fs::exists(m_out / kMark))
      throw ToolError(m_out.string(), "files that author did not make appeared in it meanwhile, "
                                      "so it is left as it is");
    old = m_stage.string() + "-old";
    fs::rename(m_out, old, error);
    if (error)
      throw ToolError(m_out.string(), "cannot replace the output folder: " + error.message());
  }
  fs::rename(m_stage, m_out, error);
  if (error) {
    std::error_code ignored;
    if (!old.empty()) fs::rename(old, m_out, ignored);
    throw ToolError(m_out.string(), "cannot replace the output folder: " + error.message());
  }
  m_finished = true;
  Close(&m_stageLock);
  if (!old.empty()) fs::remove_all(old, error);
}

DiscOutput::~DiscOutput() {
  std::error_code ignored;
  if (!m_finished && !m_stage.empty()) fs::remove_all(m_stage, ignored);
  if (!m_stagedIso.empty()) fs::remove(m_stagedIso, ignored);
  Close(&m_stageLock);
  Close(&m_isoLock);
}

}  // namespace menutool::author
