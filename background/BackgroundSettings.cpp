// The page-wide settings of CMenuTemplate: template mode, background picture and music, button
// counts, output picture and mask names, and the previous/next switches. Setters with a cached
// member store the value there before writing; getters store into it only on success.
#include <tolvex/MenuTemplate.h>

#include "background/BackgroundKeys.h"

using namespace tolvex::background;

int CMenuTemplate::SetTemplateMode(int ntsc) {
  m_nTemplateMode = ntsc;  // kept as given; the file gets only TRUE or FALSE
  return PageTarget(m_strTemplateFile).Write(kTemplateMode, ntsc);
}

int CMenuTemplate::GetTemplateMode(int* ntsc) {
  return PageTarget(m_strTemplateFile).Read(kTemplateMode, ntsc);
}

int CMenuTemplate::SetBkBMPFileName(CString name) {
  m_strBkBmpFileName = name;
  return PageTarget(m_strTemplateFile).Write(kBackgroundBmp, name);
}

int CMenuTemplate::GetFileName(CString* name) {
  return PageTarget(m_strTemplateFile).Read(kBackgroundBmp, name);
}

int CMenuTemplate::SetMusicFileName(CString name) {
  m_strMusicFileName = name;
  return PageTarget(m_strTemplateFile).Write(kMusic, name);
}

int CMenuTemplate::GetMusicFileName(CString* name) {
  return PageTarget(m_strTemplateFile).ReadKept(kMusic, &m_strMusicFileName, name);
}

int CMenuTemplate::SetMaxNumOfButtons(unsigned int count) {
  m_nMaxNumOfButtons = count;
  return PageTarget(m_strTemplateFile).Write(kMaxButtons, count);
}

int CMenuTemplate::GetMaxNumOfButtons(unsigned int* count) {
  return PageTarget(m_strTemplateFile).ReadKept(kMaxButtons, &m_nMaxNumOfButtons, count);
}

int CMenuTemplate::SetCurrentNumOfButtons(unsigned int count) {
  m_nCurrentNumOfButtons = count;
  return PageTarget(m_strTemplateFile).Write(kCurrentButtons, count);
}

int CMenuTemplate::GetCurrentNumOfButtons(unsigned int* count) {
  return PageTarget(m_strTemplateFile).ReadKept(kCurrentButtons, &m_nCurrentNumOfButtons, count);
}

int CMenuTemplate::SetOutputBMPFile(CString name) {
  m_strOutputBmpFile = name;
  return PageTarget(m_strTemplateFile).Write(kOutputBmp, name);
}

int CMenuTemplate::GetOutputBMPFile(CString* name) {
  return PageTarget(m_strTemplateFile).ReadKept(kOutputBmp, &m_strOutputBmpFile, name);
}

int CMenuTemplate::SetOutMaskFile(CString name) {
  return PageTarget(m_strTemplateFile).Write(kOutMask, name);
}

int CMenuTemplate::GetOutMaskFile(CString* name) {
  return PageTarget(m_strTemplateFile).Read(kOutMask, name);
}

int CMenuTemplate::SetAddPrevButton(int add) {
  return PageTarget(m_strTemplateFile).Write(kAddPrev, add);
}

int CMenuTemplate::GetAddPrevButton(int* add) {
  return PageTarget(m_strTemplateFile).Read(kAddPrev, add);
}

int CMenuTemplate::SetAddNextButton(int add) {
  return PageTarget(m_strTemplateFile).Write(kAddNext, add);
}

int CMenuTemplate::GetAddNextButton(int* add) {
  return PageTarget(m_strTemplateFile).Read(kAddNext, add);
}
