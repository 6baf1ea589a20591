// The trimming of the caller's ANSI names (see IniLine.h); the line rules are templates there.
#include "platform/IniLine.h"

namespace tolvex::platform {

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

}  // namespace tolvex::platform
