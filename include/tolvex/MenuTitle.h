// CMenuTitle: one title held in memory (text, position and font). A plain value record with
// no file behind it; every value is kept exactly as given. Every setter and getter returns 1.
#ifndef TOLVEX_MENUTITLE_H
#define TOLVEX_MENUTITLE_H

#include <tolvex/CString.h>
#include <tolvex/Export.h>
#include <tolvex/WinTypes.h>

class TOLVEX_API CMenuTitle {
 public:
  CMenuTitle();  // strings empty, numbers 0
  CMenuTitle(const CMenuTitle& other);
  CMenuTitle& operator=(const CMenuTitle& other);
  ~CMenuTitle();

  int SetPos(tagPOINT* pos);  // copies x and y from *pos
  int GetPos(tagPOINT* pos);  // copies x and y into *pos
  int SetTitle(CString title);
  int GetTitle(CString* title);
  int SetFontName(CString name);
  int GetFontName(CString* name);
  int SetFontSize(unsigned int size);
  int GetFontSize(unsigned int* size);
  int SetFontItalic(int italic);  // flags are kept as given: 7 stays 7
  int GetFontItalic(int* italic);
  int SetFontBold(int bold);
  int GetFontBold(int* bold);
  int SetFontUnderline(int underline);
  int GetFontUnderline(int* underline);
  int SetFontRGB(unsigned long rgb);  // the colour is kept as one unchecked word
  int GetFontRGB(unsigned long* rgb);

 private:
  tagPOINT m_Position;
  CString m_strTitle;
  CString m_strFontName;
  unsigned int m_nFontSize;
  int m_bItalic;
  int m_bBold;
  int m_bUnderline;
  unsigned long m_FontRGB;
};

#endif  // TOLVEX_MENUTITLE_H
