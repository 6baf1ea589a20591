// CMenuTitle: a title held in memory. Every value is stored exactly as given.
#include <tolvex/MenuTitle.h>

CMenuTitle::CMenuTitle()
    : m_Position{0, 0}, m_nFontSize(0), m_bItalic(0), m_bBold(0), m_bUnderline(0), m_FontRGB(0) {}

CMenuTitle::CMenuTitle(const CMenuTitle& other) = default;
CMenuTitle& CMenuTitle::operator=(const CMenuTitle& other) = default;
CMenuTitle::~CMenuTitle() = default;

int CMenuTitle::SetPos(tagPOINT* pos) {
  if (pos != nullptr) m_Position = *pos;
  return 1;
}

int CMenuTitle::GetPos(tagPOINT* pos) {
  if (pos != nullptr) *pos = m_Position;
  return 1;
}

int CMenuTitle::SetTitle(CString title) {
  m_strTitle = title;
  return 1;
}

int CMenuTitle::GetTitle(CString* title) {
  if (title != nullptr) *title = m_strTitle;
  return 1;
}

int CMenuTitle::SetFontName(CString name) {
  m_strFontName = name;
  return 1;
}

int CMenuTitle::GetFontName(CString* name) {
  if (name != nullptr) *name = m_strFontName;
  return 1;
}

int CMenuTitle::SetFontSize(unsigned int size) {
  m_nFontSize = size;
  return 1;
}

int CMenuTitle::GetFontSize(unsigned int* size) {
  if (size != nullptr) *size = m_nFontSize;
  return 1;
}

int CMenuTitle::SetFontItalic(int italic) {
  m_bItalic = italic;
  return 1;
}

int CMenuTitle::GetFontItalic(int* italic) {
  if (italic != nullptr) *italic = m_bItalic;
  return 1;
}

int CMenuTitle::SetFontBold(int bold) {
  m_bBold = bold;
  return 1;
}

int CMenuTitle::GetFontBold(int* bold) {
  if (bold != nullptr) *bold = m_bBold;
  return 1;
}

int CMenuTitle::SetFontUnderline(int underline) {
  m_bUnderline = underline;
  return 1;
}

int CMenuTitle::GetFontUnderline(int* underline) {
  if (underline != nullptr) *underline = m_bUnderline;
  return 1;
}

int CMenuTitle::SetFontRGB(unsigned long rgb) {
  m_FontRGB = rgb;
  return 1;
}

int CMenuTitle::GetFontRGB(unsigned long* rgb) {
  if (rgb != nullptr) *rgb = m_FontRGB;
  return 1;
}
