// libTolvex_MenuBmp: renders the menu picture of a template file, and resizes images.
#ifndef TOLVEX_MENUBMP_H
#define TOLVEX_MENUBMP_H

#include <tolvex/Export.h>

#ifdef __cplusplus
extern "C" {
#endif

// Renders the menu page described by the template file at `templateFile` into a 24-bit BMP
// named by its "OutputBmp" key (relative names are taken from the template's folder); when
// the key is missing, writes "<template name>.bmp" beside the template and records that name
// under "OutputBmp". Returns nonzero on success, 0 on any failure. Prints nothing.
// The page is 720x480 when "NTSC" is TRUE, else 720x576. Positions and sizes are canvas
// pixels: a title's position is the top-left corner of its text box (a title without one is
// centred on its button, or on the page), and its font size is the em height in pixels. Only
// the part of a button on the page is drawn, its frame along the inside of that part, the
// button's picture inside the frame; a previous or next button without a picture shows a solid
// arrow there instead, in its frame colour, pointing left (previous) or right (next).
// Inputs: the template and the pictures are read only when they are regular files (a FIFO or
// device is refused at once), the template up to 16 MB, each picture up to 64 MB, PNG, JPEG
// or BMP, no more than 16384 pixels a side and 25 megapixels as its header claims. A picture
// that is named but cannot be loaded fails the render, as does a JPEG cut before its end or a
// PNG or JPEG whose data could not hold the pixels its header claims.
// Output: replaced atomically, never left half-written; a symbolic link is followed and stays.
// Refused: an output that is the template, a picture drawn or the mask's output, one that is
// not a regular file, a read-only one (for root too), and an existing file that is neither
// empty nor a whole uncompressed 24-bit BMP as the renderers write them (a template may name
// any file). A file-size limit fails the write.
TOLVEX_RENDER_API int CreateMenuBmp(char* templateFile);

// Reads the picture `source` and writes it to `target` scaled to `width` x `height`, in the
// format named by the target's extension (BMP when unknown). Nonzero on success, else 0.
TOLVEX_RENDER_API int ImageResize(char* source, char* target, int width, int height);

// Why the last call of CreateMenuBmp or ImageResize on the calling thread failed: one short
// English line that names the file concerned, such as
// "cannot read picture /dvd/bg.png: no such file or directory"; "" when that call succeeded
// or none was made. The text stays valid until the next call of this library on the thread.
TOLVEX_RENDER_API const char* TolvexMenuBmpLastError(void);

#ifdef __cplusplus
}
#endif

#endif  // TOLVEX_MENUBMP_H
