// Writes a menu template through the installed library, in one edit, reads it back with a
// second object and prints "ok". Usage: consumer TEMPLATE
// The record headers are included only to show that they are installed and stand alone.
#include <tolvex/MenuButton.h>
#include <tolvex/MenuTemplate.h>
#include <tolvex/MenuTitle.h>
#include <tolvex/TemplateEdit.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: consumer TEMPLATE\n");
    return 2;
  }
  CMenuTemplate writer(argv[1]);
  tolvex::TemplateEdit edit(writer);
  const bool written = edit.IsOpen() && writer.SetCurrentNumOfButtons(3) &&
                       writer.SetBkTitle("Main Menu") &&
                       writer.SetBtnPosition(1, tagRECT{10, 20, 110, 60}) &&
                       writer.SetBtnTitle(1, "Play") && edit.Commit();

  CMenuTemplate reader;
  reader.SetTemplateFile(argv[1]);
  unsigned int count = 0;
  CString title, buttonTitle;
  tagRECT rect{};
  const bool read = reader.GetCurrentNumOfButtons(&count) && reader.GetBkTitle(&title) &&
                    reader.GetBtnPosition(1, &rect) && reader.GetBtnTitle(1, &buttonTitle);

  if (!written || !read || count != 3 || title != "Main Menu" || buttonTitle != "Play" ||
      rect.left != 10 || rect.top != 20 || rect.right != 110 || rect.bottom != 60) {
    std::fprintf(stderr, "round trip failed: written %d, read %d\n", written, read);
    return 1;
  }
  std::printf("ok\n");
  return 0;
}
