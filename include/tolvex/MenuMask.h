// libTolvex_MenuMask: renders the DVD highlight mask of a template's menu page.
#ifndef TOLVEX_MENUMASK_H
#define TOLVEX_MENUMASK_H

#include <tolvex/Export.h>

#ifdef __cplusplus
extern "C" {
#endif

// Renders the mask of the menu page described by `templateFile` into an uncompressed BMP
// named by its "OutMask" key (default "<template name>_mask.bmp", then recorded): black
// everywhere but an outline round each visible button, drawn in one marking colour without
// anti-aliasing (white on black, 24-bit, the page's size). The outline lies just outside the
// button's rectangle, so the frame of the menu picture stays visible inside a highlight; it is
// as thick as the frame, at least 2 and at most 4 pixels. Where there is no room outside (the
// page's edge, a neighbour closer than the outlines need), that side lies on the frame instead,
// at least 2 pixels thick, and the highlight covers the frame there. Buttons that would touch
// are kept one pixel apart, so each is one area of its own for tools such as spumux's
// autooutline; an area is the button's rectangle grown by its outline.
// Returns nonzero on success, 0 on any failure. Prints nothing.
// The template is read and the output written under the same rules as CreateMenuBmp's; the
// output must not be the template, a picture the page names or the menu's output.
TOLVEX_RENDER_API int CreateMaskMenuBmp(char* templateFile);

// Why the last call of CreateMaskMenuBmp on the calling thread failed: one short English line
// that names the file concerned, such as "cannot write output /dvd/menu_mask.bmp: permission
// denied"; "" when that call succeeded or none was made. The text stays valid until the next
// call of this library on the thread.
TOLVEX_RENDER_API const char* TolvexMenuMaskLastError(void);

#ifdef __cplusplus
}
#endif

#endif  // TOLVEX_MENUMASK_H
