// The rectangle, frame and pictures of the numbered buttons of CMenuTemplate.
#include <tolvex/MenuTemplate.h>

#include "keys/ButtonKeys.h"
#include "buttons/LayoutLookup.h"

using namespace tolvex::buttons;

int CMenuTemplate::SetBtnPosition(unsigned int index, tagRECT rect) {
  return ButtonTarget(m_strTemplateFile, index).Write(kPosition, rect.left, rect.right, rect.top,
                                                      rect.bottom);
}

int CMenuTemplate::GetBtnPosition(unsigned int index, tagRECT* rect) {
  if (rect == nullptr) return 0;
  return ButtonTarget(m_strTemplateFile, index).Read(kPosition, &rect->left, &rect->right,
                                                     &rect->top, &rect->bottom);
}

int CMenuTemplate::SetBtnFrameSize(unsigned int index, unsigned int thickness) {
  return ButtonTarget(m_strTemplateFile, index).Write(kFrameSize, thickness);
}

int CMenuTemplate::GetBtnFrameSize(unsigned int index, unsigned int* thickness) {
  return ButtonTarget(m_strTemplateFile, index).Read(kFrameSize, thickness);
}

int CMenuTemplate::SetBtnFrameRGB(unsigned int index, unsigned int red, unsigned int green,
                                  unsigned int blue) {
  return ButtonTarget(m_strTemplateFile, index).Write(kFrameRGB, red, green, blue);
}

int CMenuTemplate::GetBtnFrameRGB(unsigned int index, unsigned int* red, unsigned int* green,
                                  unsigned int* blue) {
  return ButtonTarget(m_strTemplateFile, index).Read(kFrameRGB, red, green, blue);
}

int CMenuTemplate::SetBtnFrameBMP(unsigned int index, CString name) {
  return ButtonTarget(m_strTemplateFile, index).Write(kFrameBmp, name);
}

int CMenuTemplate::GetBtnFrameBMP(unsigned int index, CString* name) {
  return ButtonTarget(m_strTemplateFile, index).Read(kFrameBmp, name);
}

int CMenuTemplate::SetBtnBMP(unsigned int index, CString name) {
  return ButtonTarget(m_strTemplateFile, index).Write(kBmp, name);
}

int CMenuTemplate::GetBtnBMP(unsigned int index, CString* name) {
  return ButtonTarget(m_strTemplateFile, index).Read(kBmp, name);
}
