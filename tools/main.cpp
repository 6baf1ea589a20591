// Entry point of menutemplate, the command-line tool for DVD menu templates.
#include "tools/cli/CommandLine.h"

#include "platform/Os.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
  // What the tool prints (show --json, say) and what apply reads from '-' are the same bytes on
  // every system.
  tolvex::platform::os::UseBinaryStandardStreams();
  try {
    return menutool::RunCommandLine(argc, argv);
  } catch (const std::exception& error) {  // out of memory, filesystem trouble
    std::cerr << "menutemplate: " << error.what() << "\n";
    return 2;
  }
}
