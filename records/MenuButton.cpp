// CMenuButton: a button held in memory, with a title reference it does not own.
#include <tolvex/MenuButton.h>

CMenuButton::CMenuButton()
    : m_pTitle(nullptr), m_Rect{0, 0, 0, 0}, m_nFrameSize(0), m_FrameRGB(0),
      m_NavigationInfo{0, 0} {}

CMenuButton::CMenuButton(const CMenuButton& other) = default;
CMenuButton& CMenuButton::operator=(const CMenuButton& other) = default;
CMenuButton::~CMenuButton() = default;

int CMenuButton::SetRect(tagRECT* rect) {
  if (rect != nullptr) m_Rect = *rect;
  return 1;
}

int CMenuButton::GetRect(tagRECT* rect) {
  if (rect != nullptr) *rect = m_Rect;
  return 1;
}

int CMenuButton::SetFrameSize(unsigned int size) {
  m_nFrameSize = size;
  return 1;
}

int CMenuButton::GetFrameSize(unsigned int* size) {
  if (size != nullptr) *size = m_nFrameSize;
  return 1;
}

int CMenuButton::SetFrameRGB(unsigned long rgb) {
  m_FrameRGB = rgb;
  return 1;
}

int CMenuButton::GetFrameRGB(unsigned long* rgb) {
  if (rgb != nullptr) *rgb = m_FrameRGB;
  return 1;
}

int CMenuButton::SetFrameFileName(CString name) {
  m_strFrameFileName = name;
  return 1;
}

int CMenuButton::GetFrameFileName(CString* name) {
  if (name != nullptr) *name = m_strFrameFileName;
  return 1;
}

int CMenuButton::SetFileName(CString name) {
  m_strFileName = name;
  return 1;
}

int CMenuButton::GetFileName(CString* name) {
  if (name != nullptr) *name = m_strFileName;
  return 1;
}

int CMenuButton::SetNavigationInfo(tagPOINT* info) {
  if (info != nullptr) m_NavigationInfo = *info;
  return 1;
}

int CMenuButton::GetNavigationInfo(tagPOINT* info) {
  if (info != nullptr) *info = m_NavigationInfo;
  return 1;
}

int CMenuButton::SetTitle(CMenuTitle* /*title*/) {
  return 1;  // the title reference is set by no operation
}

int CMenuButton::GetTitle(CMenuTitle* title) {
  if (m_pTitle == nullptr || title == nullptr) return 0;
  // The passed title's values flow into the referenced one, in this order.
  int italic = 0, bold = 0, underline = 0;
  unsigned long rgb = 0;
  unsigned int size = 0;
  CString fontName, text;
  tagPOINT pos{0, 0};
  title->GetFontBold(&bold);
  title->GetFontItalic(&italic);
  title->GetFontUnderline(&underline);
  title->GetFontRGB(&rgb);
  title->GetFontSize(&size);
  title->GetFontName(&fontName);
  title->GetPos(&pos);
  title->GetTitle(&text);
  m_pTitle->SetFontBold(bold);
  m_pTitle->SetFontItalic(italic);
  m_pTitle->SetFontUnderline(underline);
  m_pTitle->SetFontRGB(rgb);
  m_pTitle->SetFontSize(size);
  m_pTitle->SetFontName(fontName);
  m_pTitle->SetPos(&pos);
  m_pTitle->SetTitle(text);
  return 1;
}
