// The encodings a profile file may have (code page 1252, or UTF-8/UTF-16LE/UTF-16BE after a
// byte order mark) and the conversions between a file's text and the caller's ANSI text.
// The parser works on "units": the code units of the file's own encoding (a byte for ANSI and
// UTF-8, a 16-bit unit for UTF-16), so every unit maps back to a byte offset for editing in
// place. All the characters the parser looks for are ASCII, which is one unit in each
// encoding and never part of another character. Pure functions.
#ifndef TOLVEX_PLATFORM_TEXTENCODING_H
#define TOLVEX_PLATFORM_TEXTENCODING_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvex::platform {

enum class FileEncoding { kAnsi, kUtf8, kUtf16Le, kUtf16Be };

// A file's content as units, with what is needed to map them back to its bytes.
struct FileText {
  FileEncoding encoding = FileEncoding::kAnsi;
  size_t markBytes = 0;  // the byte order mark before the first unit
  std::u16string units;

  size_t ByteOffset(size_t unit) const {
    return markBytes + unit * (encoding == FileEncoding::kUtf16Le ||
                                       encoding == FileEncoding::kUtf16Be
                                   ? 2
                                   : 1);
  }
};

// The encoding of a file that starts with `bytes`, and the length of its byte order mark.
FileEncoding EncodingOf(std::string_view bytes, size_t* markBytes);

// Splits `bytes` into units by the byte order mark at its start (none means code page 1252).
// A trailing odd byte of a UTF-16 file is not a unit.
FileText DecodeFile(std::string_view bytes);

// The bytes of `units` in `encoding`, without a byte order mark.
std::string EncodeUnits(std::u16string_view units, FileEncoding encoding);

// The caller's code page 1252 text as units of a file in `encoding`, returned or appended to
// `out` (which then allocates only when it must grow).
std::u16string UnitsFromAnsi(std::string_view ansi, FileEncoding encoding);
void AppendUnitsFromAnsi(std::string_view ansi, FileEncoding encoding, std::u16string* out);

// Units of a file in `encoding` as code page 1252 text: ANSI files byte for byte, Unicode
// files character by character with the best fit, '?' where there is none. Invalid UTF-8
// reads as U+FFFD. One UTF-16 unit gives one byte. Returned or appended to `out`.
std::string AnsiFromUnits(std::u16string_view units, FileEncoding encoding);
void AppendAnsiFromUnits(std::u16string_view units, FileEncoding encoding, std::string* out);

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_TEXTENCODING_H
