// Where author writes, and the rules that keep the user's files safe. The disc is made in a
// hidden staging folder beside the output folder and swapped in only when it is complete; the
// disc image is written to a hidden file beside its name and renamed into place. Every folder
// author makes carries a mark file, and only a folder with the mark is ever replaced: any other
// non-empty folder, the current folder or one holding it, a folder holding an input, `/` and
// the home folder are refused whatever the flags. No input is ever an output. The mark of a
// staging folder is locked while its run lives, so a second run into the same output is
// refused, and the work of a killed run (its lock gone with it) is removed by the next run.
// Single-threaded; the swap at the end runs with the stop signals held back (Stop.h).
#ifndef TOLVEX_TOOLS_AUTHOR_DISCOUTPUT_H
#define TOLVEX_TOOLS_AUTHOR_DISCOUTPUT_H

#include <filesystem>
#include <string>
#include <vector>

namespace menutool::author {

class DiscOutput {
 public:
  // Checks `out` (and `iso`, empty for none) against the rules and the `inputs` (every file the
  // disc is made from), then makes the staging folder. `replace`: an earlier disc folder made
  // by author, or an existing disc image, may be replaced. Throws ToolError with one line, and
  // then has removed nothing.
  DiscOutput(const std::string& out, const std::string& iso,
             const std::vector<std::string>& inputs, bool replace);
  // Removes the staging folder and the unfinished disc image unless Finish() succeeded.
  ~DiscOutput();
  DiscOutput(const DiscOutput&) = delete;
  DiscOutput& operator=(const DiscOutput&) = delete;

  const std::filesystem::path& stage() const { return m_stage; }
  const std::filesystem::path& out() const { return m_out; }
  const std::filesystem::path& iso() const { return m_iso; }
  // Where the disc image is written until Finish() renames it to iso().
  const std::filesystem::path& stagedIso() const { return m_stagedIso; }
  // Lines about what was cleaned up before starting (work of killed runs).
  const std::vector<std::string>& notes() const { return m_notes; }

  // Puts the finished disc in place of the output folder and the image at its name.
  void Finish();

 private:
  void MakeStage();
  void ClaimIso();

  std::filesystem::path m_out, m_iso, m_stage, m_stagedIso;
  bool m_replace;
  bool m_finished = false;
  int m_stageLock = -1, m_isoLock = -1;
  std::vector<std::string> m_notes;
};

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_DISCOUTPUT_H
