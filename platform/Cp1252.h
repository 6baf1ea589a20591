// Code page 1252 conversions, one UTF-16 code unit at a time (a surrogate pair gives two '?',
// as on Windows). Pure functions.
#ifndef TOLVEX_PLATFORM_CP1252_H
#define TOLVEX_PLATFORM_CP1252_H

namespace tolvex::platform {

char16_t Cp1252ToUnicode(unsigned char byte);
// The code page byte for `unit`: exact, else the best fit, else '?'.
unsigned char Cp1252FromUnicode(char16_t unit);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_CP1252_H
