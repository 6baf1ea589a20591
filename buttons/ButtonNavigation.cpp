// The navigation values of the numbered buttons of CMenuTemplate. The setter sends the
// indexes 0 and 1 to the sections "PrevButton" and "NextButton"; the getter always reads the
// layout section.
#include <tolvex/MenuTemplate.h>

#include "keys/ButtonKeys.h"
#include "buttons/LayoutLookup.h"

using namespace tolvex::buttons;

int CMenuTemplate::SetBtnNavInfo(unsigned int index, unsigned int r, unsigned int c) {
  return ButtonNavLinkTarget(m_strTemplateFile, index).Write(kNavInfo, r, c);
}

int CMenuTemplate::GetBtnNavInfo(unsigned int index, unsigned int* r, unsigned int* c) {
  return ButtonTarget(m_strTemplateFile, index).Read(kNavInfo, r, c);
}
