// Entry point of menutemplate, the command-line tool for DVD menu templates.
#include "tools/cli/CommandLine.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
  try {
    return menutool::RunCommandLine(argc, argv);
  } catch (const std::exception& error) {  // out of memory, filesystem trouble
    std::cerr << "menutemplate: " << error.what() << "\n";
    return 2;
  }
}
