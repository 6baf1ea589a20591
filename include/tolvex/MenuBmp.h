// libTolvex_MenuBmp: renders the menu picture of a template file, and resizes images.
#ifndef TOLVEX_MENUBMP_H
#define TOLVEX_MENUBMP_H

#ifdef __cplusplus
extern "C" {
#endif

// Renders the menu page described by the template file at `templateFile` into a 24-bit BMP
// named by its "OutputBmp" key (relative names are taken from the template's folder); when
// the key is missing, writes "<template name>.bmp" beside the template and records that name
// under "OutputBmp". Returns nonzero on success, 0 on any failure. Prints nothing.
__attribute__((visibility("default"))) int CreateMenuBmp(char* templateFile);

// Reads the picture `source` and writes it to `target` scaled to `width` x `height`, in the
// format named by the target's extension (BMP when unknown). Nonzero on success, else 0.
__attribute__((visibility("default"))) int ImageResize(char* source, char* target, int width,
                                                       int height);

#ifdef __cplusplus
}
#endif

#endif  // TOLVEX_MENUBMP_H
