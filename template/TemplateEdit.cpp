// TemplateEdit: the class form of the profile layer's edits, for programs using CMenuTemplate.
#include <tolvex/MenuTemplate.h>
#include <tolvex/Profile.h>
#include <tolvex/TemplateEdit.h>

namespace tolvex {

TemplateEdit::TemplateEdit(CMenuTemplate& menu) : m_edit(nullptr) {
  CString file;
  menu.GetTemplateFile(&file);
  m_edit = TolvexBeginProfileEdit(file);
}

TemplateEdit::TemplateEdit(const char* file) : m_edit(TolvexBeginProfileEdit(file)) {}

TemplateEdit::~TemplateEdit() { TolvexEndProfileEdit(m_edit); }

bool TemplateEdit::IsOpen() const { return TolvexProfileEditIsOpen(m_edit) != FALSE; }

bool TemplateEdit::Commit() { return m_edit && TolvexCommitProfileEdit(m_edit) != FALSE; }

}  // namespace tolvex
