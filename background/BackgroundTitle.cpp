// The background title of CMenuTemplate: text, position and font, in the section
// "Background". Only GetBkTitle keeps what it read in the object.
#include <tolvex/MenuTemplate.h>

#include "background/BackgroundKeys.h"

using namespace tolvex::background;

int CMenuTemplate::SetBkTitle(CString title) {
  return PageTarget(m_strTemplateFile).Write(kTitle, title);
}

int CMenuTemplate::GetBkTitle(CString* title) {
  return PageTarget(m_strTemplateFile).ReadKept(kTitle, &m_strBkTitle, title);
}

int CMenuTemplate::SetBkTitlePosition(tagPOINT pos) {
  return PageTarget(m_strTemplateFile).Write(kTitlePosition, pos.x, pos.y);
}

int CMenuTemplate::GetBkTitlePosition(tagPOINT* pos) {
  if (pos == nullptr) return 0;
  return PageTarget(m_strTemplateFile).Read(kTitlePosition, &pos->x, &pos->y);
}

int CMenuTemplate::SetBkTitleFontName(CString name) {
  return PageTarget(m_strTemplateFile).Write(kTitleFontName, name);
}

int CMenuTemplate::GetBkTitleFontName(CString* name) {
  return PageTarget(m_strTemplateFile).Read(kTitleFontName, name);
}

int CMenuTemplate::SetBkTitleFontSize(unsigned int size) {
  return PageTarget(m_strTemplateFile).Write(kTitleFontSize, size);
}

int CMenuTemplate::GetBkTitleFontSize(unsigned int* size) {
  return PageTarget(m_strTemplateFile).Read(kTitleFontSize, size);
}

int CMenuTemplate::SetBkTitleFontStyle(int italic, int bold, int underline) {
  return PageTarget(m_strTemplateFile).Write(kTitleFontStyle, italic, bold, underline);
}

int CMenuTemplate::GetBkTitleFontStyle(int* italic, int* bold, int* underline) {
  return PageTarget(m_strTemplateFile).Read(kTitleFontStyle, italic, bold, underline);
}

int CMenuTemplate::SetBkTitleFontRGB(unsigned int red, unsigned int green, unsigned int blue) {
  return PageTarget(m_strTemplateFile).Write(kTitleFontRGB, red, green, blue);
}

int CMenuTemplate::GetBkTitleFontRGB(unsigned int* red, unsigned int* green, unsigned int* blue) {
  return PageTarget(m_strTemplateFile).Read(kTitleFontRGB, red, green, blue);
}
