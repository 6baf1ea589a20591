// CMenuButton: one menu button held in memory (rectangle, frame, pictures, navigation values)
// and a reference to a title it does not own. A plain value record with no file behind it;
// copying copies the title reference, so both copies refer to the same title.
#ifndef TOLVEX_MENUBUTTON_H
#define TOLVEX_MENUBUTTON_H

#include <tolvex/CString.h>
#include <tolvex/Export.h>
#include <tolvex/MenuTitle.h>
#include <tolvex/WinTypes.h>

class TOLVEX_API CMenuButton {
 public:
  CMenuButton();  // strings empty, numbers 0, no title reference
  CMenuButton(const CMenuButton& other);
  CMenuButton& operator=(const CMenuButton& other);
  ~CMenuButton();  // leaves the referenced title alone

  int SetRect(tagRECT* rect);  // copies the four edges as they are (left may exceed right)
  int GetRect(tagRECT* rect);
  int SetFrameSize(unsigned int size);
  int GetFrameSize(unsigned int* size);
  int SetFrameRGB(unsigned long rgb);
  int GetFrameRGB(unsigned long* rgb);
  int SetFrameFileName(CString name);
  int GetFrameFileName(CString* name);
  int SetFileName(CString name);
  int GetFileName(CString* name);
  int SetNavigationInfo(tagPOINT* info);
  int GetNavigationInfo(tagPOINT* info);

  // Returns 1 and changes nothing: no operation sets the title reference.
  int SetTitle(CMenuTitle* title);
  // Copies the values of *title (flags, colour, size, font name, position, text) into the
  // referenced title. Returns 0 without copying when there is no title reference or `title`
  // is NULL; else 1.
  int GetTitle(CMenuTitle* title);

 private:
  CMenuTitle* m_pTitle;
  tagRECT m_Rect;
  unsigned int m_nFrameSize;
  unsigned long m_FrameRGB;
  CString m_strFrameFileName;
  CString m_strFileName;
  tagPOINT m_NavigationInfo;
};

#endif  // TOLVEX_MENUBUTTON_H
