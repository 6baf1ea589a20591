// CString: the counted byte string of the application framework, in the subset that
// applications of this library use. Bytes are kept as given (no encoding is assumed); the
// text always has a terminating NUL after its counted bytes. Out of memory is reported by
// std::bad_alloc, which passes through every operation of the library unchanged.
#ifndef TOLVEX_CSTRING_H
#define TOLVEX_CSTRING_H

#include <tolvex/Export.h>

#include <string>

class TOLVEX_API CString {
 public:
  CString();
  CString(const char* text);  // NOLINT: implicit, as in the framework; NULL makes ""
  CString(const char* bytes, int length);
  CString(const CString& other);
  CString(CString&& other) noexcept;
  ~CString();

  CString& operator=(const CString& other);
  CString& operator=(CString&& other) noexcept;
  CString& operator=(const char* text);

  int GetLength() const;
  bool IsEmpty() const;
  void Empty();
  char GetAt(int index) const;
  const char* GetString() const;
  operator const char*() const;  // NOLINT: implicit, as in the framework

  // Replaces the text with `format` expanded by the rules of printf.
  void Format(const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;

  CString& operator+=(const CString& other);
  CString& operator+=(const char* text);
  CString& operator+=(char ch);

  // Byte-wise comparison of the counted text.
  int Compare(const CString& other) const;
  int Compare(const char* text) const;

 private:
  std::string m_text;
};

TOLVEX_API CString operator+(const CString& a, const CString& b);
TOLVEX_API CString operator+(const CString& a, const char* b);
TOLVEX_API CString operator+(const char* a, const CString& b);

inline bool operator==(const CString& a, const CString& b) { return a.Compare(b) == 0; }
inline bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
inline bool operator==(const char* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return !(a == b); }
inline bool operator!=(const CString& a, const char* b) { return !(a == b); }
inline bool operator!=(const char* a, const CString& b) { return !(a == b); }
inline bool operator<(const CString& a, const CString& b) { return a.Compare(b) < 0; }
inline bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
inline bool operator<(const char* a, const CString& b) { return b.Compare(a) > 0; }

#endif  // TOLVEX_CSTRING_H
