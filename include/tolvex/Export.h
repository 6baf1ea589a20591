// The export macro of the Tolvex libraries: marks the declarations that form their public ABI.
// Everything else in the libraries is built with hidden visibility.
#ifndef TOLVEX_EXPORT_H
#define TOLVEX_EXPORT_H

#if defined(_WIN32)
#  if defined(TOLVEX_BUILDING_LIBRARY)
#    define TOLVEX_API __declspec(dllexport)
#  else
#    define TOLVEX_API __declspec(dllimport)
#  endif
#else
#  define TOLVEX_API __attribute__((visibility("default")))
#endif

// The entry points of the rendering libraries (<tolvex/MenuBmp.h>, <tolvex/MenuMask.h>), which
// are C functions. A Windows program calls them through the libraries' import libraries, so
// they need no dllimport there (which would also forbid the stand-ins some tests define).
#if defined(_WIN32)
#  if defined(TOLVEX_BUILDING_RENDERER)
#    define TOLVEX_RENDER_API __declspec(dllexport)
#  else
#    define TOLVEX_RENDER_API
#  endif
#else
#  define TOLVEX_RENDER_API __attribute__((visibility("default")))
#endif

#endif  // TOLVEX_EXPORT_H
