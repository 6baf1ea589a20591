// Byte order marks, UTF-8 and UTF-16 coding, and the step through code page 1252 for the
// caller's text. Pure functions over strings; linear in their input.
#include "platform/TextEncoding.h"

#include "platform/Cp1252.h"

namespace tolvex::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

void AppendUtf16(std::u16string& out, char32_t codePoint) {
  if (codePoint < 0x10000) {
    out.push_back(static_cast<char16_t>(codePoint));
  } else {
    codePoint -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (codePoint >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
  }
}

void AppendUtf8(std::string& out, char32_t codePoint) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else if (codePoint < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  }
}

// Decodes UTF-8 held one byte per unit into UTF-16. Each maximal invalid subsequence (an
// ill-formed lead byte, or a lead byte with the valid continuation bytes that follow it)
// becomes one U+FFFD.
std::u16string Utf16FromUtf8Units(std::u16string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  size_t i = 0;
  while (i < bytes.size()) {
    unsigned lead = bytes[i] & 0xFF;
    if (lead < 0x80) {
      out.push_back(static_cast<char16_t>(lead));
      ++i;
      continue;
    }
    int length = 0;
    char32_t codePoint = 0;
    unsigned low = 0x80, high = 0xBF;  // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2, codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3, codePoint = lead & 0x0F;
      if (lead == 0xE0) low = 0xA0;   // no overlong forms
      if (lead == 0xED) high = 0x9F;  // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4, codePoint = lead & 0x07;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F;  // nothing above U+10FFFF
    } else {
      out.push_back(kReplacement);
      ++i;
      continue;
    }
    size_t next = i + 1;
    bool valid = true;
    for (int k = 1; k < length; ++k, ++next) {
      unsigned byte = next < bytes.size() ? (bytes[next] & 0xFF) : 0;
      unsigned min = k == 1 ? low : 0x80, max = k == 1 ? high : 0xBF;
      if (next >= bytes.size() || byte < min || byte > max) {
        valid = false;
        break;
      }
      codePoint = (codePoint << 6) | (byte & 0x3F);
    }
    if (valid) {
      AppendUtf16(out, codePoint);
    } else {
      out.push_back(kReplacement);
    }
    i = next;
  }
  return out;
}

}  // namespace

FileEncoding EncodingOf(std::string_view bytes, size_t* markBytes) {
  auto starts = [&](std::string_view mark) { return bytes.substr(0, mark.size()) == mark; };
  *markBytes = 0;
  if (starts("\xEF\xBB\xBF")) {
    *markBytes = 3;
    return FileEncoding::kUtf8;
  }
  if (starts("\xFF\xFE") || starts("\xFE\xFF")) {
    *markBytes = 2;
    return bytes[0] == '\xFF' ? FileEncoding::kUtf16Le : FileEncoding::kUtf16Be;
  }
  return FileEncoding::kAnsi;
}

FileText DecodeFile(std::string_view bytes) {
  FileText text;
  text.encoding = EncodingOf(bytes, &text.markBytes);
  std::string_view body = bytes.substr(text.markBytes);
  if (text.encoding == FileEncoding::kUtf16Le || text.encoding == FileEncoding::kUtf16Be) {
    bool little = text.encoding == FileEncoding::kUtf16Le;
    text.units.resize(body.size() / 2);
    for (size_t i = 0; i < text.units.size(); ++i) {
      unsigned first = static_cast<unsigned char>(body[2 * i]);
      unsigned second = static_cast<unsigned char>(body[2 * i + 1]);
      text.units[i] = static_cast<char16_t>(little ? first | (second << 8) : (first << 8) | second);
    }
  } else {
    text.units.resize(body.size());
    for (size_t i = 0; i < body.size(); ++i) text.units[i] = static_cast<unsigned char>(body[i]);
  }
  return text;
}

std::string EncodeUnits(std::u16string_view units, FileEncoding encoding) {
  std::string out;
  if (encoding == FileEncoding::kUtf16Le || encoding == FileEncoding::kUtf16Be) {
    bool little = encoding == FileEncoding::kUtf16Le;
    out.reserve(units.size() * 2);
    for (char16_t unit : units) {
      char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
      out.push_back(little ? low : high);
      out.push_back(little ? high : low);
    }
  } else {
    out.reserve(units.size());
    for (char16_t unit : units) out.push_back(static_cast<char>(unit & 0xFF));
  }
  return out;
}

std::u16string UnitsFromAnsi(std::string_view ansi, FileEncoding encoding) {
  std::u16string units;
  AppendUnitsFromAnsi(ansi, encoding, &units);
  return units;
}

void AppendUnitsFromAnsi(std::string_view ansi, FileEncoding encoding, std::u16string* out) {
  std::u16string& units = *out;
  switch (encoding) {
    case FileEncoding::kAnsi: {
      const size_t at = units.size();
      units.resize(at + ansi.size());
      char16_t* to = units.data() + at;
      for (char byte : ansi) *to++ = static_cast<unsigned char>(byte);
      break;
    }
    case FileEncoding::kUtf8: {
      std::string utf8;
      for (char byte : ansi) AppendUtf8(utf8, Cp1252ToUnicode(static_cast<unsigned char>(byte)));
      units.reserve(units.size() + utf8.size());
      for (char byte : utf8) units.push_back(static_cast<unsigned char>(byte));
      break;
    }
    case FileEncoding::kUtf16Le:
    case FileEncoding::kUtf16Be:
      units.reserve(units.size() + ansi.size());
      for (char byte : ansi) units.push_back(Cp1252ToUnicode(static_cast<unsigned char>(byte)));
      break;
  }
}

std::string AnsiFromUnits(std::u16string_view units, FileEncoding encoding) {
  std::string ansi;
  AppendAnsiFromUnits(units, encoding, &ansi);
  return ansi;
}

void AppendAnsiFromUnits(std::u16string_view units, FileEncoding encoding, std::string* out) {
  std::string& ansi = *out;
  std::u16string utf16;
  if (encoding == FileEncoding::kUtf8) {
    utf16 = Utf16FromUtf8Units(units);
    units = utf16;
  }
  ansi.reserve(ansi.size() + units.size());
  if (encoding == FileEncoding::kAnsi) {
    for (char16_t unit : units) ansi.push_back(static_cast<char>(unit & 0xFF));
  } else {
    for (char16_t unit : units) ansi.push_back(static_cast<char>(Cp1252FromUnicode(unit)));
  }
}

}  // namespace tolvex::platform
