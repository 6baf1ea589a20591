// CMenuTemplate: one DVD menu page kept in a template file (an INI file). The object is bound
// to the file's path and offers a setter and a getter for every property of the page; each
// call reads or writes the file at once, one key per profile call, and nothing is cached for
// reading. An object is used by one thread at a time; several objects, processes and the
// rendering libraries may share one template file.
//
// Common rules of every setter and getter (each returns 1 on success, 0 on failure):
//  - Values are stored as text: integers as signed decimal ("%d", so 4294967295 is "-1" and
//    reads back as 4294967295), flags as "TRUE"/"FALSE" (read back as 1 only for "TRUE" or
//    "true"), file names and titles verbatim. Nothing is range-checked or clamped.
//  - A setter of several keys writes them in the order listed and stops at the first failed
//    write (missing folder, read-only file, disk full); keys before it stay written.
//  - A getter returns 0 when a key is missing or holds the reserved text "default"; it then
//    leaves every out-parameter as it was (GetNavInfo excepted, see there). Texts are read
//    through a buffer of 80 bytes (at most 79 characters come back) unless "1000" is noted.
//  - A NULL out-pointer is refused: the getter returns 0 and reads and writes nothing.
//  - The per-button operations (Btn) first read "CurrentNumberOfButton" from the section
//    "Background" and work in the layout section "NumOfButton<n>" of that count; when the key
//    is missing (or holds "error") they return 0 and touch nothing. The button index is
//    printed with "%d" into the key names and compared with nothing.
#ifndef TOLVEX_MENUTEMPLATE_H
#define TOLVEX_MENUTEMPLATE_H

#include <tolvex/CString.h>
#include <tolvex/Export.h>
#include <tolvex/MenuTitle.h>
#include <tolvex/WinTypes.h>

class TOLVEX_API CMenuTemplate {
 public:
  CMenuTemplate();  // not bound: the template file path is empty
  CMenuTemplate(CString templateFile);  // binds to the path; the file is not touched
  CMenuTemplate(const CMenuTemplate& other);
  CMenuTemplate& operator=(const CMenuTemplate& other);
  ~CMenuTemplate();  // the template file stays as it is

  // --- The template file -------------------------------------------------------------------
  int SetTemplateFile(CString path);   // rebinds; cached values are kept; always 1
  int GetTemplateFile(CString* path);  // always 1 (0 for a NULL pointer)
  // Copies the file at `existingPath` (or the bound file) to `newPath`, replacing a file there.
  // Returns `newPath` whether or not the copy succeeded; the object stays bound as it was.
  CString CopyTemplateFile(CString newPath, CString existingPath);
  CString CopyTemplateFile(CString newPath);

  // --- Page-wide settings: section "Background" -----------------------------------------------
  int SetTemplateMode(int ntsc);   // "NTSC", flag; the object keeps the value as given
  int GetTemplateMode(int* ntsc);  // 1 or 0
  int SetBkBMPFileName(CString name);  // "BackgroundBmp", text
  int GetFileName(CString* name);      // "BackgroundBmp", 1000
  int SetMusicFileName(CString name);  // "BackgroundMusic", text
  int GetMusicFileName(CString* name); // 1000
  int SetMaxNumOfButtons(unsigned int count);   // "MaximumNumberOfButton", integer
  int GetMaxNumOfButtons(unsigned int* count);
  int SetCurrentNumOfButtons(unsigned int count);   // "CurrentNumberOfButton", integer;
  int GetCurrentNumOfButtons(unsigned int* count);  // selects the layout of every Btn call
  int SetOutputBMPFile(CString name);  // "OutputBmp", text
  int GetOutputBMPFile(CString* name); // 1000
  int SetOutMaskFile(CString name);    // "OutMask", text
  int GetOutMaskFile(CString* name);   // 1000
  int SetAddPrevButton(int add);   // "AddPrevButton", flag
  int GetAddPrevButton(int* add);
  int SetAddNextButton(int add);   // "AddNextButton", flag
  int GetAddNextButton(int* add);

  // --- Background title: section "Background" ------------------------------------------------
  int SetBkTitle(CString title);   // "BackgroundTitle", text
  int GetBkTitle(CString* title);  // 80; the object keeps the text read
  int SetBkTitlePosition(tagPOINT pos);   // "BackgroundTitlePosition_x", "_y", integers
  int GetBkTitlePosition(tagPOINT* pos);
  int SetBkTitleFontName(CString name);   // "BackgroundTitleFont_Name", text
  int GetBkTitleFontName(CString* name);  // 1000
  int SetBkTitleFontSize(unsigned int size);   // "BackgroundTitleFont_Size", integer
  int GetBkTitleFontSize(unsigned int* size);
  // "BackgroundTitleFont_Italic", "_Bold", "_Underline", flags, in that order
  int SetBkTitleFontStyle(int italic, int bold, int underline);
  int GetBkTitleFontStyle(int* italic, int* bold, int* underline);
  // "BackgroundTitleFont_R", "_G", "_B", integers, in that order
  int SetBkTitleFontRGB(unsigned int red, unsigned int green, unsigned int blue);
  int GetBkTitleFontRGB(unsigned int* red, unsigned int* green, unsigned int* blue);

  // --- Previous (selector 0, "PrevButton", keys "ButtonPrev...") and next (selector 1,
  // "NextButton", keys "ButtonNext...") buttons. Any other selector: returns 1 at once and
  // reads and writes nothing, out-parameters included. --------------------------------------
  // "Button<Prev|Next>ButtonPosition_left", "_right", "_top", "_bottom", in that order
  int SetNavBtnPosition(unsigned int nav, tagRECT rect);
  int GetNavBtnPosition(unsigned int nav, tagRECT* rect);
  // "Button<Prev|Next>NavigationInfo_r", "_c". The getter stores r before it reads c, so when
  // only c is missing it returns 0 with r already filled.
  int SetNavInfo(unsigned int nav, unsigned int r, unsigned int c);
  int GetNavInfo(unsigned int nav, unsigned int* r, unsigned int* c);
  int SetNavBtnFrameSize(unsigned int nav, unsigned int thickness);  // "...FrameThickness"
  int GetNavBtnFrameSize(unsigned int nav, unsigned int* thickness);
  // "Button<Prev|Next>Frame_R", "_G", "_B"
  int SetNavBtnFrameRGB(unsigned int nav, unsigned int red, unsigned int green,
                        unsigned int blue);
  int GetNavBtnFrameRGB(unsigned int nav, unsigned int* red, unsigned int* green,
                        unsigned int* blue);
  int SetNavBtnFrameBMP(unsigned int nav, CString name);   // "...FrameBmp", text
  int GetNavBtnFrameBMP(unsigned int nav, CString* name);  // 1000
  int SetNavBtnBMPFile(unsigned int nav, CString name);    // "...Bmp", text
  int GetNavBtnBMPFile(unsigned int nav, CString* name);   // 1000

  // --- Numbered buttons, in the layout section of the current count ---------------------------
  // "ButtonPosition<i>_left", "_right", "_top", "_bottom", in that order
  int SetBtnPosition(unsigned int index, tagRECT rect);
  int GetBtnPosition(unsigned int index, tagRECT* rect);
  int SetBtnFrameSize(unsigned int index, unsigned int thickness);  // "ButtonFrameThickness<i>"
  int GetBtnFrameSize(unsigned int index, unsigned int* thickness);
  // "ButtonFrame_R<i>", "ButtonFrame_G<i>", "ButtonFrame_B<i>"
  int SetBtnFrameRGB(unsigned int index, unsigned int red, unsigned int green,
                     unsigned int blue);
  int GetBtnFrameRGB(unsigned int index, unsigned int* red, unsigned int* green,
                     unsigned int* blue);
  int SetBtnFrameBMP(unsigned int index, CString name);   // "ButtonFrameBmp<i>", text
  int GetBtnFrameBMP(unsigned int index, CString* name);
  int SetBtnBMP(unsigned int index, CString name);        // "ButtonBmp<i>", text
  int GetBtnBMP(unsigned int index, CString* name);
  // "ButtonNavigationInfo_r<i>", "ButtonNavigationInfo_c<i>". The setter writes the indexes 0
  // and 1 into "PrevButton" and "NextButton"; the getter reads every index from the layout.
  int SetBtnNavInfo(unsigned int index, unsigned int r, unsigned int c);
  int GetBtnNavInfo(unsigned int index, unsigned int* r, unsigned int* c);
  int SetBtnTitle(unsigned int index, CString title);   // "ButtonTitle<i>", text
  int GetBtnTitle(unsigned int index, CString* title);
  // "ButtonTitlePosition<i>_x", "_y"
  int SetBtnTitlePosition(unsigned int index, tagPOINT pos);
  int GetBtnTitlePosition(unsigned int index, tagPOINT* pos);
  int SetBtnTitleFontName(unsigned int index, CString name);   // "ButtonTitleFont_Name<i>"
  int GetBtnTitleFontName(unsigned int index, CString* name);
  int SetBtnTitleFontSize(unsigned int index, unsigned int size);  // "ButtonTitleFont_Size<i>"
  int GetBtnTitleFontSize(unsigned int index, unsigned int* size);
  // "ButtonTitleFont_Italic<i>", "_Bold<i>", "_Underline<i>", flags
  int SetBtnTitleFontStyle(unsigned int index, int italic, int bold, int underline);
  int GetBtnTitleFontStyle(unsigned int index, int* italic, int* bold, int* underline);
  // "ButtonTitleFont_R<i>", "_G<i>", "_B<i>"
  int SetBtnTitleFontRGB(unsigned int index, unsigned int red, unsigned int green,
                         unsigned int blue);
  int GetBtnTitleFontRGB(unsigned int index, unsigned int* red, unsigned int* green,
                         unsigned int* blue);

  // --- Rendering ------------------------------------------------------------------------------
  // Renders the menu picture (CreateMenuBmp) or its mask (CreateMaskMenuBmp) from the bound
  // template, or first binds to `templateFile` (kept even when rendering fails). Returns the
  // picture's name as "OutputBmp"/"OutMask" holds it afterwards, or "" on failure.
  CString CreateMenuBMP();
  CString CreateMenuBMP(CString templateFile);
  CString CreateMaskBMP();
  CString CreateMaskBMP(CString templateFile);
  // Passes its arguments unchanged to ImageResize (source, target, width, height); 1 or 0.
  int ResizeImage(CString source, CString target, unsigned int width, unsigned int height);

 private:
  int m_nTemplateMode;
  CString m_strBkBmpFileName;
  CString m_strMusicFileName;
  CMenuTitle m_BkTitle;
  unsigned int m_nMaxNumOfButtons;
  unsigned int m_nCurrentNumOfButtons;
  CString m_strOutputBmpFile;
  CString m_strTemplateFile;
  CString m_strBkTitle;
};

#endif  // TOLVEX_MENUTEMPLATE_H
