// The titles of the numbered buttons of CMenuTemplate: text, position and font. Unlike the
// background title, nothing read here is kept in the object.
#include <tolvex/MenuTemplate.h>

#include "keys/ButtonKeys.h"
#include "buttons/LayoutLookup.h"

using namespace tolvex::buttons;

int CMenuTemplate::SetBtnTitle(unsigned int index, CString title) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitle, title);
}

int CMenuTemplate::GetBtnTitle(unsigned int index, CString* title) {
  return ButtonTarget(m_strTemplateFile, index).Read(kTitle, title);
}

int CMenuTemplate::SetBtnTitlePosition(unsigned int index, tagPOINT pos) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitlePosition, pos.x, pos.y);
}

int CMenuTemplate::GetBtnTitlePosition(unsigned int index, tagPOINT* pos) {
  if (pos == nullptr) return 0;
  return ButtonTarget(m_strTemplateFile, index).Read(kTitlePosition, &pos->x, &pos->y);
}

int CMenuTemplate::SetBtnTitleFontName(unsigned int index, CString name) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitleFontName, name);
}

int CMenuTemplate::GetBtnTitleFontName(unsigned int index, CString* name) {
  return ButtonTarget(m_strTemplateFile, index).Read(kTitleFontName, name);
}

int CMenuTemplate::SetBtnTitleFontSize(unsigned int index, unsigned int size) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitleFontSize, size);
}

int CMenuTemplate::GetBtnTitleFontSize(unsigned int index, unsigned int* size) {
  return ButtonTarget(m_strTemplateFile, index).Read(kTitleFontSize, size);
}

int CMenuTemplate::SetBtnTitleFontStyle(unsigned int index, int italic, int bold, int underline) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitleFontStyle, italic, bold, underline);
}

int CMenuTemplate::GetBtnTitleFontStyle(unsigned int index, int* italic, int* bold,
                                        int* underline) {
  return ButtonTarget(m_strTemplateFile, index).Read(kTitleFontStyle, italic, bold, underline);
}

int CMenuTemplate::SetBtnTitleFontRGB(unsigned int index, unsigned int red, unsigned int green,
                                      unsigned int blue) {
  return ButtonTarget(m_strTemplateFile, index).Write(kTitleFontRGB, red, green, blue);
}

int CMenuTemplate::GetBtnTitleFontRGB(unsigned int index, unsigned int* red, unsigned int* green,
                                      unsigned int* blue) {
  return ButtonTarget(m_strTemplateFile, index).Read(kTitleFontRGB, red, green, blue);
}
