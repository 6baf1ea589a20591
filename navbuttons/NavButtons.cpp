// The previous and next buttons of CMenuTemplate: position, navigation values, frame and
// pictures, in the sections "PrevButton" and "NextButton". Nothing is kept in the object.
#include <tolvex/MenuTemplate.h>

#include "navbuttons/NavButtonKeys.h"

using namespace tolvex::navbuttons;

int CMenuTemplate::SetNavBtnPosition(unsigned int nav, tagRECT rect) {
  return NavTarget(m_strTemplateFile, nav).Write(kPosition, rect.left, rect.right, rect.top,
                                                 rect.bottom);
}

int CMenuTemplate::GetNavBtnPosition(unsigned int nav, tagRECT* rect) {
  if (rect == nullptr) return 0;
  return NavTarget(m_strTemplateFile, nav).Read(kPosition, &rect->left, &rect->right, &rect->top,
                                                &rect->bottom);
}

int CMenuTemplate::SetNavInfo(unsigned int nav, unsigned int r, unsigned int c) {
  return NavTarget(m_strTemplateFile, nav).Write(kNavInfo, r, c);
}

int CMenuTemplate::GetNavInfo(unsigned int nav, unsigned int* r, unsigned int* c) {
  // r is stored before c is read: a missing c leaves r filled.
  return NavTarget(m_strTemplateFile, nav).ReadEach(kNavInfo, r, c);
}

int CMenuTemplate::SetNavBtnFrameSize(unsigned int nav, unsigned int thickness) {
  return NavTarget(m_strTemplateFile, nav).Write(kFrameSize, thickness);
}

int CMenuTemplate::GetNavBtnFrameSize(unsigned int nav, unsigned int* thickness) {
  return NavTarget(m_strTemplateFile, nav).Read(kFrameSize, thickness);
}

int CMenuTemplate::SetNavBtnFrameRGB(unsigned int nav, unsigned int red, unsigned int green,
                                     unsigned int blue) {
  return NavTarget(m_strTemplateFile, nav).Write(kFrameRGB, red, green, blue);
}

int CMenuTemplate::GetNavBtnFrameRGB(unsigned int nav, unsigned int* red, unsigned int* green,
                                     unsigned int* blue) {
  return NavTarget(m_strTemplateFile, nav).Read(kFrameRGB, red, green, blue);
}

int CMenuTemplate::SetNavBtnFrameBMP(unsigned int nav, CString name) {
  return NavTarget(m_strTemplateFile, nav).Write(kFrameBmp, name);
}

int CMenuTemplate::GetNavBtnFrameBMP(unsigned int nav, CString* name) {
  return NavTarget(m_strTemplateFile, nav).Read(kFrameBmp, name);
}

int CMenuTemplate::SetNavBtnBMPFile(unsigned int nav, CString name) {
  return NavTarget(m_strTemplateFile, nav).Write(kBmp, name);
}

int CMenuTemplate::GetNavBtnBMPFile(unsigned int nav, CString* name) {
  return NavTarget(m_strTemplateFile, nav).Read(kBmp, name);
}
