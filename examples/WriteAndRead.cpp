// A small program against the installed API: writes a three-button menu template and reads
// it back. Usage: write_and_read [TEMPLATE] (default: ./example-menu.ini).
#include <tolvex/MenuTemplate.h>

#include <cstdio>

int main(int argc, char** argv) {
  CMenuTemplate menu(argc > 1 ? argv[1] : "./example-menu.ini");
  menu.SetTemplateMode(1);  // NTSC
  menu.SetMaxNumOfButtons(3);
  menu.SetCurrentNumOfButtons(3);
  menu.SetBkTitle("My Holiday");
  menu.SetBkTitlePosition({60, 40});
  for (unsigned i = 0; i < 3; ++i) {
    CString title;
    title.Format("Chapter %u", i + 1);
    const int left = 80 + static_cast<int>(i) * 200;
    menu.SetBtnPosition(i, {left, 300, left + 160, 390});
    menu.SetBtnTitle(i, title);
  }

  CString title;
  unsigned count = 0;
  if (!menu.GetBkTitle(&title) || !menu.GetCurrentNumOfButtons(&count)) {
    std::fprintf(stderr, "cannot read the template back\n");
    return 1;
  }
  std::printf("%s: %u buttons\n", title.GetString(), count);
  for (unsigned i = 0; i < count; ++i) {
    tagRECT r{};
    CString name;
    if (menu.GetBtnPosition(i, &r) && menu.GetBtnTitle(i, &name))
      std::printf("  button %u \"%s\" at (%d,%d)-(%d,%d)\n", i, name.GetString(), r.left, r.top,
                  r.right, r.bottom);
  }
  return 0;
}
