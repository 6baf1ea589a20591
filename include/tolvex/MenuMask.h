// libTolvex_MenuMask: renders the DVD highlight mask of a template's menu page.
#ifndef TOLVEX_MENUMASK_H
#define TOLVEX_MENUMASK_H

#ifdef __cplusplus
extern "C" {
#endif

// Renders the mask of the menu page described by `templateFile` into an uncompressed BMP
// named by its "OutMask" key (default "<template name>_mask.bmp", then recorded): black
// everywhere but each visible button's frame ring, drawn in one marking colour without
// anti-aliasing (white on black, 24-bit, the page's size). Rings are at least 2 pixels thick;
// buttons that would touch are kept one pixel apart, so each is one area of its own for tools
// such as spumux's autooutline. Returns nonzero on success, 0 on any failure. Prints nothing.
// The template is read and the output written under the same rules as CreateMenuBmp's; the
// output must not be the template, a picture the page names or the menu's output.
__attribute__((visibility("default"))) int CreateMaskMenuBmp(char* templateFile);

// Why the last call of CreateMaskMenuBmp on the calling thread failed: one short English line
// that names the file concerned, such as "cannot write output /dvd/menu_mask.bmp: permission
// denied"; "" when that call succeeded or none was made. The text stays valid until the next
// call of this library on the thread.
__attribute__((visibility("default"))) const char* TolvexMenuMaskLastError(void);

#ifdef __cplusplus
}
#endif

#endif  // TOLVEX_MENUMASK_H
