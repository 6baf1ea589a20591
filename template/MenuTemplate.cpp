// CMenuTemplate itself: construction, copying, the binding to a template file and the copying
// of template files. The object holds the path and copies of values that passed through it,
// never an open file.
#include <tolvex/MenuTemplate.h>

#include <tolvex/Profile.h>

CMenuTemplate::CMenuTemplate()
    : m_nTemplateMode(0), m_nMaxNumOfButtons(0), m_nCurrentNumOfButtons(0) {}

CMenuTemplate::CMenuTemplate(CString templateFile) : CMenuTemplate() {
  m_strTemplateFile = templateFile;
}

CMenuTemplate::CMenuTemplate(const CMenuTemplate& other) = default;

CMenuTemplate& CMenuTemplate::operator=(const CMenuTemplate& other) = default;

CMenuTemplate::~CMenuTemplate() = default;

int CMenuTemplate::SetTemplateFile(CString path) {
  m_strTemplateFile = path;
  return 1;
}

int CMenuTemplate::GetTemplateFile(CString* path) {
  if (path == nullptr) return 0;
  *path = m_strTemplateFile;
  return 1;
}

CString CMenuTemplate::CopyTemplateFile(CString newPath, CString existingPath) {
  // The result of the copy is not reported: the new path is returned either way.
  CopyFileA(existingPath, newPath, FALSE);
  return newPath;
}

CString CMenuTemplate::CopyTemplateFile(CString newPath) {
  return CopyTemplateFile(newPath, m_strTemplateFile);
}
