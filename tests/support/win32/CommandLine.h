// Command lines of the tests' child processes on Windows: text in the ANSI code page widened,
// and each argument quoted so that the C runtime of the child splits the line back into it.
#ifndef TOLVEX_TESTS_SUPPORT_WIN32_COMMANDLINE_H
#define TOLVEX_TESTS_SUPPORT_WIN32_COMMANDLINE_H

#include <windows.h>

#include <string>

namespace tolvex::test {

inline std::wstring Wide(const std::string& text) {
  const int length =
      MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
  return wide;
}

// `arg` in quotes, backslashes before a quote (or the closing one) doubled.
inline std::wstring Quoted(const std::wstring& arg) {
  std::wstring out = L"\"";
  size_t backslashes = 0;
  for (wchar_t c : arg) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    out.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
    backslashes = 0;
    out += c;
  }
  out.append(backslashes * 2, L'\\');
  return out + L"\"";
}

}  // namespace tolvex::test

#endif  // TOLVEX_TESTS_SUPPORT_WIN32_COMMANDLINE_H
