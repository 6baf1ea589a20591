// The command line of menutemplate: its subcommands, options and help text (CLI11).
#ifndef TOLVEX_TOOLS_COMMANDLINE_H
#define TOLVEX_TOOLS_COMMANDLINE_H

namespace menutool {

// Parses the arguments, runs the chosen subcommand and returns the exit status. Usage errors
// print one line (and a hint to --help) and give status 2.
int RunCommandLine(int argc, char** argv);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_COMMANDLINE_H
