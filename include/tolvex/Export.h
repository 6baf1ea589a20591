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

#endif  // TOLVEX_EXPORT_H
