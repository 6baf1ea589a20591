// The command line of menutemplate (see CommandLine.h). The property list in the help comes
// from the property table, so it cannot drift from what get and set accept.
#include "tools/cli/CommandLine.h"

#include "tools/cli/Commands.h"
#include "tools/page/Properties.h"
#include "tools/cli/ToolError.h"
#include "tools/author/AuthorOptions.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <iostream>

namespace menutool {
namespace {

void AddPropertyOptions(CLI::App* command, PropertyOptions* options) {
  command->add_option("FILE", options->file, "template file")->required();
  command->add_option("PROPERTY", options->property, "property name (see the list below)")
      ->required();
  command->add_option("--button", options->button, "button index, for button.* properties");
  command->add_option("--nav", options->nav, "prev or next, for nav.* properties")
      ->check(CLI::IsMember({"prev", "next"}));
  command->footer(PropertyList());
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  CLI::App app{"Reads, writes, checks and renders DVD menu templates."};
  app.name("menutemplate");
  app.require_subcommand(1);
  // Options start with '-' on every system: a name such as "/dvd/menu.ini" is a file, also on
  // Windows, where CLI11 would otherwise take "/x" for an option.
  app.allow_windows_style_options(false);
  std::function<int()> run;

  NewOptions make;
  CLI::App* cmd = app.add_subcommand("new", "write a complete, renderable template");
  cmd->add_option("FILE", make.file, "template file to create")->required();
  cmd->add_option("--buttons", make.buttons, "current button count")
      ->check(CLI::Range(1, 36));
  cmd->add_option("--max", make.max, "layouts are written for 1..MAX buttons (default: --buttons)")
      ->check(CLI::Range(1, 36));
  auto* ntsc = cmd->add_flag("--ntsc", "NTSC page, 720x480 (the default)");
  cmd->add_flag("--pal", make.pal, "PAL page, 720x576")->excludes(ntsc);
  cmd->add_option("--background", make.background, "background picture");
  cmd->add_option("--button-picture", make.buttonPicture, "picture of every button");
  cmd->add_option("--music", make.music, "background music");
  cmd->add_option("--title", make.title, "page title")->capture_default_str();
  cmd->add_flag("--nav", make.nav, "show previous and next buttons (for a page among several)");
  cmd->add_flag("--force", make.force, "replace FILE if it exists");
  cmd->callback([&] { run = [&] { return RunNew(make); }; });

  PropertyOptions get;
  cmd = app.add_subcommand("get", "print one property");
  AddPropertyOptions(cmd, &get);
  cmd->callback([&] { run = [&] { return RunGet(get); }; });

  PropertyOptions set;
  cmd = app.add_subcommand("set", "change one property");
  AddPropertyOptions(cmd, &set);
  cmd->add_option("VALUE", set.values, "the property's values, in the order listed below")
      ->required();
  cmd->add_flag("--rescale", set.rescale,
                "with mode: scale the layout to the new canvas (NTSC 720x480, PAL 720x576)");
  cmd->footer(PropertyList() + "Put -- before a text value that begins with '-'.\n");
  cmd->callback([&] { run = [&] { return RunSet(set); }; });

  std::string file;
  bool json = false;
  cmd = app.add_subcommand("show", "print the whole page: settings, prev/next, every layout");
  cmd->add_option("FILE", file, "template file")->required();
  cmd->add_flag("--json", json, "print JSON");
  cmd->footer(PropertyList());
  cmd->callback([&] { run = [&] { return RunShow(file, json); }; });

  cmd = app.add_subcommand(
      "check", "find what will go wrong on rendering (exit 0 clean, 1 warnings, 2 errors)");
  cmd->add_option("FILE", file, "template file")->required();
  cmd->callback([&] { run = [&] { return RunCheck(file); }; });

  std::string changes;
  cmd = app.add_subcommand("apply", "write a JSON document shaped as show --json prints it");
  cmd->add_option("FILE", file, "template file")->required();
  cmd->add_option("CHANGES", changes, "JSON file, or - for the standard input")->required();
  cmd->footer(
      "CHANGES holds all or any part of what show --json prints; null leaves a value as it is,\n"
      "and a value of several parts may give only some of them. Texts are Unicode and must be\n"
      "characters of code page 1252, the template's encoding, so every one of its bytes round-\n"
      "trips. Everything is written in one edit: all of it, or on any error nothing.\n");
  cmd->callback([&] { run = [&] { return RunApply(file, changes); }; });

  std::string preview;
  cmd = app.add_subcommand("render", "render the menu picture and its mask");
  cmd->add_option("FILE", file, "template file")->required();
  cmd->add_option("--preview", preview,
                  "also write a PNG of the menu with the button areas outlined");
  bool force = false;
  cmd->add_flag("--force", force, "render even when check finds errors");
  cmd->callback([&] { run = [&] { return RunRender(file, preview, force); }; });

  std::string source, target;
  unsigned width = 0, height = 0;
  cmd = app.add_subcommand("resize", "scale a picture");
  cmd->add_option("SOURCE", source, "picture to read")->required();
  cmd->add_option("TARGET", target, "picture to write; its extension names the format")->required();
  cmd->add_option("WIDTH", width, "width in pixels")->required()->check(CLI::Range(1, 65535));
  cmd->add_option("HEIGHT", height, "height in pixels")->required()->check(CLI::Range(1, 65535));
  cmd->callback([&] { run = [&] { return RunResize(source, target, width, height); }; });

  AuthorOptions author;
  cmd = app.add_subcommand("author", kAuthorSummary);
  cmd->add_option("PAGE", author.pages, "menu templates, one per page, in menu order")->required();
  cmd->add_option("--video", author.videos,
                  "videos for the numbered buttons, in order (repeatable)")->required();
  cmd->add_option("--out", author.out, "folder to write (VIDEO_TS and the files it is made from)")
      ->required();
  cmd->add_option("--iso", author.iso, "also write a DVD-Video disc image");
  cmd->add_option("--highlight", author.highlight, "colour of a highlighted button: R G B")
      ->expected(3)->check(CLI::Range(0, 255));
  cmd->add_option("--select", author.select, "colour of a pressed button: R G B")
      ->expected(3)->check(CLI::Range(0, 255));
  cmd->add_option("--aspect", author.aspect,
                  "aspect of the titles: auto (16:9 for wide videos, 4:3 for the others), 4:3 "
                  "or 16:9")
      ->check(CLI::IsMember({"auto", "4:3", "16:9"}))->default_str("auto");
  cmd->add_flag("--dvd9", author.dvd9, "fill a dual-layer disc (8.5 GB) instead of 4.7 GB");
  cmd->add_flag("--force", author.force,
                "replace an earlier disc folder made by author, and an existing disc image");
  cmd->add_flag("--ignore-check", author.ignoreCheck,
                "make the disc although check finds errors in a page");
  cmd->callback([&] { run = [&] { return RunAuthor(author); }; });

  // Set last: a subcommand takes the footer its parent has when it is added.
  app.footer(
      "'menutemplate COMMAND --help' shows the options of one command; get, set and show\n"
      "list the properties of a page.\n");

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::CallForAllHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "menutemplate: " << error.what() << " (see menutemplate --help)\n";
    return kExitError;
  }
  try {
    return run();
  } catch (const ToolError& error) {
    std::cerr << "menutemplate: " << error.what() << "\n";
    return error.status();
  }
}

}  // namespace menutool
