// CString: the framework's counted byte string, kept in a std::string. Allocation failures
// surface as std::bad_alloc; nothing here catches them.
#include <tolvex/CString.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

std::string_view ViewOf(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

}  // namespace

CString::CString() = default;
CString::CString(const char* text) : m_text(ViewOf(text)) {}
CString::CString(const char* bytes, int length)
    : m_text(bytes && length > 0 ? std::string(bytes, static_cast<size_t>(length)) : std::string()) {}
CString::CString(const CString& other) = default;
CString::CString(CString&& other) noexcept : m_text(std::move(other.m_text)) { other.m_text.clear(); }
CString::~CString() = default;

CString& CString::operator=(const CString& other) = default;

CString& CString::operator=(CString&& other) noexcept {
  if (this != &other) {
    m_text = std::move(other.m_text);
    other.m_text.clear();
  }
  return *this;
}

CString& CString::operator=(const char* text) {
  m_text.assign(ViewOf(text));  // safe when `text` points into this string
  return *this;
}

int CString::GetLength() const { return static_cast<int>(m_text.size()); }
bool CString::IsEmpty() const { return m_text.empty(); }
void CString::Empty() { m_text.clear(); }

char CString::GetAt(int index) const {
  return index >= 0 && static_cast<size_t>(index) < m_text.size() ? m_text[index] : '\0';
}

const char* CString::GetString() const { return m_text.c_str(); }
CString::operator const char*() const { return m_text.c_str(); }

void CString::Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list measure;
  va_copy(measure, args);
  const int length = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  std::string text;
  if (length > 0) {
    text.resize(static_cast<size_t>(length));
    // vsnprintf writes the terminating NUL into the string's own terminator slot.
    std::vsnprintf(text.data(), text.size() + 1, format, args);
  }
  va_end(args);
  m_text.swap(text);
}

CString& CString::operator+=(const CString& other) {
  m_text += other.m_text;
  return *this;
}

CString& CString::operator+=(const char* text) {
  m_text.append(ViewOf(text));
  return *this;
}

CString& CString::operator+=(char ch) {
  m_text.push_back(ch);
  return *this;
}

int CString::Compare(const CString& other) const { return m_text.compare(other.m_text); }
int CString::Compare(const char* text) const { return m_text.compare(ViewOf(text)); }

CString operator+(const CString& a, const CString& b) {
  CString result(a);
  result += b;
  return result;
}

CString operator+(const CString& a, const char* b) {
  CString result(a);
  result += b;
  return result;
}

CString operator+(const char* a, const CString& b) {
  CString result(a);
  result += b;
  return result;
}
