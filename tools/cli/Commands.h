// The subcommands of menutemplate, one function each (each in its own Cmd*.cpp), with the
// options the command line gives them. Each returns the exit status or throws ToolError.
#ifndef TOLVEX_TOOLS_COMMANDS_H
#define TOLVEX_TOOLS_COMMANDS_H

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace menutool {

struct NewOptions {
  std::string file;
  unsigned buttons = 4;
  std::optional<unsigned> max;  // default: the button count
  bool pal = false;
  std::string background;
  std::string buttonPicture;
  std::string music;
  std::string title = "Main Menu";
  bool force = false;
  bool nav = false;  // show the previous and next buttons
};

struct PropertyOptions {
  std::string file;
  std::string property;
  std::vector<std::string> values;  // set only
  std::optional<unsigned> button;
  std::optional<std::string> nav;   // "prev" or "next"
  bool rescale = false;             // set mode only: scale the layout to the new canvas
};

int RunNew(const NewOptions& options);
int RunGet(const PropertyOptions& options);
int RunSet(const PropertyOptions& options);
int RunShow(const std::string& file, bool json);
int RunCheck(const std::string& file);
// What CheckTemplate judges, and the name it gives the file in its findings.
struct CheckScope {
  bool layoutInUseOnly = false;  // the other layouts are never drawn (author's copy of a page)
  std::string name;              // empty: the file's own
};
// check's findings on `out`, one line each; returns check's exit status and, in `errors`, how
// many findings were errors. For render and author, which refuse a page with errors.
int CheckTemplate(const std::string& file, std::ostream& out, int* errors,
                  const CheckScope& scope = {});
// `changes` is a JSON file in the shape show --json prints, or "-" for the standard input.
int RunApply(const std::string& file, const std::string& changes);
int RunRender(const std::string& file, const std::string& preview, bool force);
int RunResize(const std::string& source, const std::string& target, unsigned width,
              unsigned height);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_COMMANDS_H
