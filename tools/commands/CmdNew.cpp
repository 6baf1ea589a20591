// The new command: writes a complete, renderable template through CMenuTemplate, in one edit
// that becomes FILE only when every value has been written. Layouts for 1..max buttons
// are written by switching "CurrentNumberOfButton" to each count in turn; it ends at --buttons.
// Buttons are numbered from 1 ("Chapter 1" is button 1, at the library index ButtonNumber.h
// gives). The previous and next buttons are written in any case, shown only with --nav.
#include "tools/page/ButtonNumber.h"
#include "tools/cli/Commands.h"
#include "tools/layout/Grid.h"
#include "tools/page/TemplatePath.h"
#include "tools/page/TemplateSession.h"
#include "tools/cli/ToolError.h"
#include "tools/page/Values.h"

#include <tolvex/MenuTemplate.h>

#include <filesystem>
#include <iostream>

namespace menutool {
namespace {

namespace fs = std::filesystem;

const char kFont[] = "DejaVu Sans";
struct Rgb {
  unsigned r, g, b;
};
constexpr Rgb kTitleColour{255, 255, 255};
constexpr Rgb kFrameColour{255, 204, 0};
constexpr unsigned kFrameThickness = 4;

// A picture named on the command line, as the template should hold it: relative names are
// made relative to the template's folder, which is where the renderer looks for them.
std::string PictureName(const std::string& given, const TemplatePath& file) {
  if (given.empty()) return given;
  if (!fs::exists(given))
    std::cerr << "menutemplate: " << given << ": no such file (written all the same)\n";
  if (fs::path(given).is_absolute()) return given;
  return fs::relative(fs::absolute(given), fs::absolute(file.folder())).string();
}

// Each setter's result, turned into a message naming what could not be written.
class Writer {
 public:
  Writer(const TemplatePath& file, CMenuTemplate* menu) : m_file(file), m_menu(menu) {}
  template <class... A, class... B>
  void operator()(const char* what, int (CMenuTemplate::*setter)(A...), B&&... args) {
    if (!(m_menu->*setter)(std::forward<B>(args)...))
      throw ToolError(m_file.given(), std::string("cannot write ") + what);
  }

 private:
  const TemplatePath& m_file;
  CMenuTemplate* m_menu;
};

CString Text(const std::string& s) { return CString(s.c_str()); }

}  // namespace

int RunNew(const NewOptions& options) {
  TemplatePath file(options.file);
  unsigned max = options.max.value_or(options.buttons);
  if (options.buttons > max)
    throw ToolError(file.given(), "--buttons " + std::to_string(options.buttons) +
                                      " is more than --max " + std::to_string(max));
  const bool ntsc = !options.pal;
  const Canvas canvas = Canvas::For(ntsc);
  const std::string stem = fs::path(file.library()).stem().string();
  for (const std::string* text : {&options.title, &options.background, &options.music,
                                  &options.buttonPicture})
    if (!IsOneLine(*text)) throw ToolError(file.given(), kNotOneLine);

  // A symbolic link, even one to a file not made yet, stays a link: the edit writes its target.
  TemplateSession edit(file, options.force ? TemplateSession::Purpose::kReplace
                                           : TemplateSession::Purpose::kCreate);
  Writer write(file, &edit.menu());
  using C = CMenuTemplate;

  write("the mode", &C::SetTemplateMode, ntsc ? 1 : 0);
  write("the background", &C::SetBkBMPFileName, Text(PictureName(options.background, file)));
  write("the music", &C::SetMusicFileName, Text(PictureName(options.music, file)));
  write("the maximum button count", &C::SetMaxNumOfButtons, max);
  write("the output picture", &C::SetOutputBMPFile, Text(stem + ".bmp"));
  write("the mask picture", &C::SetOutMaskFile, Text(stem + "_mask.bmp"));

  PagePlan page = PlanPage(options.buttons, canvas, options.nav);
  write("the title", &C::SetBkTitle, Text(options.title));
  write("the title position", &C::SetBkTitlePosition, page.title);
  write("the title font", &C::SetBkTitleFontName, Text(kFont));
  write("the title font size", &C::SetBkTitleFontSize, 32u);
  write("the title font style", &C::SetBkTitleFontStyle, 0, 1, 0);
  write("the title colour", &C::SetBkTitleFontRGB, kTitleColour.r, kTitleColour.g, kTitleColour.b);

  for (unsigned nav : {0u, 1u}) {
    write(nav ? "the next button" : "the previous button",
          nav ? &C::SetAddNextButton : &C::SetAddPrevButton, options.nav ? 1 : 0);
    write("a navigation button", &C::SetNavBtnPosition, nav, nav ? page.next : page.prev);
    write("a navigation button", &C::SetNavBtnFrameSize, nav, kFrameThickness);
    write("a navigation button", &C::SetNavBtnFrameRGB, nav, kFrameColour.r, kFrameColour.g,
          kFrameColour.b);
    write("a navigation button", &C::SetNavBtnFrameBMP, nav, CString(""));
    write("a navigation button", &C::SetNavBtnBMPFile, nav, CString(""));
    // Below the last row of buttons: the previous button first, the next button last.
    write("a navigation button", &C::SetNavInfo, nav, page.rows + 1, nav ? page.columns : 1u);
  }

  const CString buttonPicture = Text(PictureName(options.buttonPicture, file));
  for (unsigned count = 1; count <= max; ++count) {
    write("the current button count", &C::SetCurrentNumOfButtons, count);
    PagePlan plan = PlanPage(count, canvas, options.nav);
    for (unsigned number = 1; number <= count; ++number) {
      const ButtonPlace& place = plan.buttons[number - 1];
      const unsigned i = LibraryIndex(number);
      const std::string what =
          "button " + std::to_string(number) + " of layout " + std::to_string(count);
      write(what.c_str(), &C::SetBtnPosition, i, place.rect);
      write(what.c_str(), &C::SetBtnFrameSize, i, kFrameThickness);
      write(what.c_str(), &C::SetBtnFrameRGB, i, kFrameColour.r, kFrameColour.g, kFrameColour.b);
      write(what.c_str(), &C::SetBtnFrameBMP, i, CString(""));
      write(what.c_str(), &C::SetBtnBMP, i, buttonPicture);
      write(what.c_str(), &C::SetBtnNavInfo, i, place.row, place.column);
      write(what.c_str(), &C::SetBtnTitle, i, Text("Chapter " + std::to_string(number)));
      write(what.c_str(), &C::SetBtnTitlePosition, i, place.title);
      write(what.c_str(), &C::SetBtnTitleFontName, i, Text(kFont));
      write(what.c_str(), &C::SetBtnTitleFontSize, i, place.titleSize);
      write(what.c_str(), &C::SetBtnTitleFontStyle, i, 0, 0, 0);
      write(what.c_str(), &C::SetBtnTitleFontRGB, i, kTitleColour.r, kTitleColour.g,
            kTitleColour.b);
    }
  }
  write("the current button count", &C::SetCurrentNumOfButtons, options.buttons);
  edit.Commit();
  return kExitOk;
}

}  // namespace menutool
