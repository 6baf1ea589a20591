// The bridge of CMenuTemplate to the rendering libraries: renders the menu picture and its
// mask from the template file and reports their names as the file holds them afterwards, and
// hands image resizing through. The libraries are bound when this library is loaded.
#include <tolvex/MenuBmp.h>
#include <tolvex/MenuMask.h>
#include <tolvex/MenuTemplate.h>

#include <string>

namespace {

// The rendering functions take a writable char*; they get a copy of the path, never the
// object's own buffer.
std::string Writable(const CString& text) {
  return std::string(text.GetString(), static_cast<size_t>(text.GetLength()));
}

}  // namespace

CString CMenuTemplate::CreateMenuBMP() {
  std::string path = Writable(m_strTemplateFile);
  if (CreateMenuBmp(path.data()) == 0) return CString();
  CString name;
  GetOutputBMPFile(&name);  // a missing "OutputBmp" leaves the name empty
  return name;
}

CString CMenuTemplate::CreateMenuBMP(CString templateFile) {
  m_strTemplateFile = templateFile;  // kept even when rendering fails
  return CreateMenuBMP();
}

CString CMenuTemplate::CreateMaskBMP() {
  std::string path = Writable(m_strTemplateFile);
  if (CreateMaskMenuBmp(path.data()) == 0) return CString();
  CString name;
  GetOutMaskFile(&name);
  return name;
}

CString CMenuTemplate::CreateMaskBMP(CString templateFile) {
  m_strTemplateFile = templateFile;
  return CreateMaskBMP();
}

int CMenuTemplate::ResizeImage(CString source, CString target, unsigned int width,
                               unsigned int height) {
  std::string first = Writable(source);
  std::string second = Writable(target);
  return ImageResize(first.data(), second.data(), static_cast<int>(width),
                     static_cast<int>(height)) != 0;
}
