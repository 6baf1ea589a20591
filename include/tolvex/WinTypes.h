// The Win32 scalar types and geometry records that the Tolvex API is written in, for builds
// without <windows.h>. On Windows the system's own definitions are used instead, from
// <windef.h> alone: the rest of <windows.h> (its function-name macros, min and max) stays out
// of the programs that include our headers.
#ifndef TOLVEX_WINTYPES_H
#define TOLVEX_WINTYPES_H

#if defined(_WIN32)
#  include <windef.h>
#else
#  include <stdint.h>

typedef uint32_t DWORD;
typedef int BOOL;
typedef const char* LPCSTR;
typedef char* LPSTR;
typedef void* HMODULE;
typedef void* HINSTANCE;

#  ifndef TRUE
#    define TRUE 1
#  endif
#  ifndef FALSE
#    define FALSE 0
#  endif

// A point on the menu page; signed 32-bit coordinates.
typedef struct tagPOINT {
  int32_t x;
  int32_t y;
} POINT;

// A rectangle on the menu page; signed 32-bit edges, in this field order.
typedef struct tagRECT {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
} RECT;
#endif

#endif  // TOLVEX_WINTYPES_H
