// Template files held in one edit for one command (see TemplateSession.h).
#include "tools/page/TemplateSession.h"

#include "tools/page/RawProfile.h"
#include "tools/cli/ToolError.h"

#include "tools/io/Reason.h"

#include "platform/Os.h"

#include <tolvex/Profile.h>

#include <cerrno>
#include <cstring>
#include <cctype>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace menutool {
namespace {

namespace fs = std::filesystem;
namespace os = tolvex::platform::os;

// Versions of this tool before edits staged a change in a copy ".NAME.XXXXXX" beside the
// template and renamed it over the file; one killed meanwhile left the copy behind. Such a
// copy is removed by the next change to the template, once it is older than any run of those
// versions could have taken, since they did not take the library's lock. (Their other leftover,
// a folder "menutemplate.XXXXXX" in the temporary folder, is left to the system's cleaning of
// that folder: it holds a copy of a template and nothing else.)
constexpr std::time_t kStaleCopyAge = 15 * 60;

bool IsStagedCopyName(const std::string& entry, const std::string& base) {
  const std::string prefix = "." + base + ".";
  if (entry.size() != prefix.size() + 6 || entry.compare(0, prefix.size(), prefix) != 0)
    return false;
  for (std::size_t i = prefix.size(); i < entry.size(); ++i)
    if (!std::isalnum(static_cast<unsigned char>(entry[i]))) return false;
  return true;
}

void RemoveStaleStagedCopies(const std::string& file) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(file, error);
  if (error) return;
  const std::string base = target.filename().string();
  const std::time_t now = std::time(nullptr);
  for (fs::directory_iterator entry(target.parent_path(), error), end; !error && entry != end;
       entry.increment(error)) {
    if (!IsStagedCopyName(entry->path().filename().string(), base)) continue;
    os::PathInfo info;
    if (os::LookAt(entry->path().string(), &info, /*followLinks=*/false).ok() &&
        info.kind == os::PathKind::kFile && info.ownedByCaller &&
        now - info.modifiedSeconds > kStaleCopyAge)
      fs::remove(entry->path(), error);
  }
}

}  // namespace

TemplateSession::TemplateSession(const TemplatePath& file, Purpose purpose)
    : m_file(file), m_path(file.library()), m_menu(CString(m_path.c_str())) {
  os::PathInfo info;
  const bool exists = os::LookAt(file.library(), &info).ok();
  switch (purpose) {
    case Purpose::kRead: file.RequireReadable(); break;
    case Purpose::kChange: file.RequireWritable(); break;
    case Purpose::kCreate:
      if (exists) throw ToolError(file.given(), "already exists (use --force to replace it)");
      break;
    case Purpose::kReplace:
      if (exists) file.RequireWritable();
      break;
  }
  m_edit = std::make_unique<tolvex::TemplateEdit>(m_menu);
  if (!m_edit->IsOpen() && purpose == Purpose::kRead) EditPrivateCopy();
  if (!m_edit->IsOpen())
    throw ToolError(file.given(), "cannot edit the file (is its folder missing or read-only?)");
  // Made meanwhile by another writer? Now that the edit holds the lock, none can make it.
  if (purpose == Purpose::kCreate && os::LookAt(file.library(), &info).ok())
    throw ToolError(file.given(), "already exists (use --force to replace it)");
  // Replacing starts from nothing: every section of the old file goes.
  if (purpose == Purpose::kReplace && exists)
    for (const std::string& section : SectionNames(path()))
      if (!WritePrivateProfileStringA(section.c_str(), nullptr, nullptr, path().c_str()))
        throw ToolError(file.given(), "cannot clear the old template");
}

TemplateSession::~TemplateSession() = default;

void TemplateSession::EditPrivateCopy() {
  std::ifstream in(m_file.library(), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in.good() && !in.eof()) throw ToolError(m_file.given(), "cannot read the file");
  std::string folder;
  const auto made = os::MakePrivateFolder("menutemplate.", &folder);
  if (!made.ok()) throw ToolError(m_file.given(), "cannot make a private copy: " + Reason(made));
  m_path = (fs::path(folder) / fs::path(m_file.library()).filename()).string();
  std::ofstream out(m_path, std::ios::binary);
  out << bytes;
  out.close();
  std::error_code ignored;
  if (!out) {
    fs::remove_all(folder, ignored);
    throw ToolError(m_file.given(), "cannot make a private copy in " + folder);
  }
  m_menu.SetTemplateFile(CString(m_path.c_str()));
  m_edit = std::make_unique<tolvex::TemplateEdit>(m_menu);
  // The edit holds the bytes now, and finds them by this name alone.
  fs::remove(m_path, ignored);
  fs::remove(folder, ignored);
}

void TemplateSession::Commit() {
  RemoveStaleStagedCopies(m_file.library());
  errno = 0;
  if (!m_edit->Commit())
    throw ToolError(m_file.given(), std::string("cannot write the file, which is left as it "
                                                "was: ") +
                                        std::strerror(errno ? errno : EIO));
}

}  // namespace menutool
