// The rules by which every property accessor of CMenuTemplate reaches its template file: the
// write rule (one profile write per key, stop at the first failure), the sentinel read (a key
// reading "default" counts as missing), the three value encodings, and the 80- and 1000-byte
// read buffers. A family of keys is described once as a KeyFamily; a KeyTarget says where the
// family's keys live for one call. No state is kept between calls.
#ifndef TOLVEX_TEMPLATE_PROFILEACCESS_H
#define TOLVEX_TEMPLATE_PROFILEACCESS_H

#include <tolvex/CString.h>
#include <tolvex/WinTypes.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "keys/KeyFamily.h"

namespace tolvex {

// `value` as "%d" prints it, held in place.
class IntegerDigits {
 public:
  explicit IntegerDigits(int value);
  IntegerDigits(const IntegerDigits&) = delete;
  IntegerDigits& operator=(const IntegerDigits&) = delete;
  const char* c_str() const { return m_begin; }
  std::string_view view() const {
    return std::string_view(m_begin, static_cast<std::size_t>(m_text + kEnd - m_begin));
  }

 private:
  static constexpr std::size_t kEnd = 11;  // the NUL's place: ten digits and a sign before it
  char m_text[kEnd + 1];
  const char* m_begin;
};

// A value as the template file keeps it, ready to be written: a number or flag printed in
// place, a text referred to where it lies (it lives no longer than the call that made it).
class ValueText {
 public:
  ValueText(Encoding encoding, int value);
  // Printed as the signed 32-bit value, so 4294967295 is stored as -1.
  ValueText(Encoding encoding, unsigned int value)
      : ValueText(encoding, static_cast<int>(value)) {}
  // The edges of a tagRECT are LONG, which Windows (LLP64) makes a 32-bit long.
  ValueText(Encoding encoding, long value) : ValueText(encoding, static_cast<int>(value)) {}
  ValueText(Encoding encoding, const CString& value);
  ValueText(const ValueText&) = delete;
  ValueText& operator=(const ValueText&) = delete;
  const char* c_str() const { return m_text; }

 private:
  IntegerDigits m_digits;
  const char* m_text;
};

void DecodeValue(Encoding encoding, const char* text, int* value);
void DecodeValue(Encoding encoding, const char* text, unsigned int* value);
void DecodeValue(Encoding encoding, const char* text, long* value);
void DecodeValue(Encoding encoding, const char* text, CString* value);

// A name of the template held in place, so that making one needs no allocation: a section
// ("NumOfButton" and a count at the longest), a placeholder's fill, or a key with its
// placeholder filled. Built from up to three pieces. Every name the template uses fits with
// room to spare; one that would not is kept empty and marked, and the call that needs it fails.
class ShortText {
 public:
  explicit ShortText(const KeyParts& pieces) {
    const std::size_t size = pieces.size();
    if (size < kRoom) {
      pieces.CopyTo(m_text);
      m_size = static_cast<unsigned char>(size);
    } else {
      m_text[0] = '\0';
      m_fits = false;
    }
  }
  explicit ShortText(std::string_view text = {}) : ShortText(KeyParts{text, {}, {}}) {}
  bool fits() const { return m_fits; }
  const char* c_str() const { return m_text; }
  std::string_view view() const { return std::string_view(m_text, m_size); }

  // The bytes a name may take, its NUL included.
  static constexpr std::size_t kRoom = 48;

 private:
  char m_text[kRoom];
  unsigned char m_size = 0;
  bool m_fits = true;
};

// A key's name: `pattern` with its placeholder replaced by `fill`.
inline ShortText KeyName(const KeyPattern& pattern, std::string_view fill) {
  return ShortText(FillKeyPattern(pattern, fill));
}

// Where a family's keys live for one call: the template file, the section, and the text that
// fills the key patterns' placeholder. A target refers to the caller's file name, so it lives
// no longer than the call that made it. A target can also be unusable (the call fails with 0
// and touches nothing) or inert (the call succeeds with 1 and touches nothing).
class KeyTarget {
 public:
  static KeyTarget In(const CString& file, std::string_view section,
                      std::string_view fill = {}) {
    return In(file, KeyParts{section, {}, {}}, fill);
  }
  // The same for a section whose name is made of pieces.
  static KeyTarget In(const CString& file, const KeyParts& section, std::string_view fill);
  static KeyTarget Unusable();
  static KeyTarget Inert();

  // The write rule: writes `values` under the family's keys in order; 1 when every write
  // succeeded, 0 at the first failed write (earlier keys stay written, later ones are not
  // tried).
  template <std::size_t N, typename... V>
  int Write(const KeyFamily<N>& family, const V&... values) const {
    static_assert(sizeof...(V) == N, "one value per key");
    if (m_state != State::Ready) return m_state == State::Inert;
    return WriteAll(family, std::index_sequence_for<V...>{}, values...);
  }

  // The sentinel read of every key in order, all or nothing: the values are held aside and
  // stored into `outs` only when every key was found. 0 for a NULL out-pointer.
  template <std::size_t N, typename... T>
  int Read(const KeyFamily<N>& family, T*... outs) const {
    static_assert(sizeof...(T) == N, "one out-parameter per key");
    if ((false || ... || (outs == nullptr))) return 0;
    if (m_state != State::Ready) return m_state == State::Inert;
    return ReadAll(family, std::index_sequence_for<T...>{}, outs...);
  }

  // As Read, but each value is stored as soon as its key has been read, so a failure leaves
  // the earlier out-parameters filled.
  template <std::size_t N, typename... T>
  int ReadEach(const KeyFamily<N>& family, T*... outs) const {
    static_assert(sizeof...(T) == N, "one out-parameter per key");
    if ((false || ... || (outs == nullptr))) return 0;
    if (m_state != State::Ready) return m_state == State::Inert;
    return ReadEachOf(family, std::index_sequence_for<T...>{}, outs...);
  }

  // Read of one key whose value the object also keeps: on success `*kept` takes the value
  // first and `*out` is copied from it.
  template <typename T>
  int ReadKept(const KeyFamily<1>& family, T* kept, T* out) const {
    T value{};
    if (out == nullptr || !Read(family, &value)) return 0;
    *kept = std::move(value);
    *out = *kept;
    return 1;
  }

 private:
  enum class State { Ready, Unusable, Inert };

  KeyTarget(State state, const char* file, const KeyParts& section, std::string_view fill);

  static constexpr std::size_t kMaxFamilyKeys = 4;
  // Writes the keys of `patterns` with `values`, `count` of each, in one call of the profile
  // layer: 1 when every write succeeded.
  int WriteKeys(const KeyPattern* patterns, const char* const* values, std::size_t count) const;
  // The sentinel read of one key into `text` (a buffer of at least kLongRead bytes);
  // false when the key counts as missing.
  bool ReadKey(const KeyPattern& pattern, DWORD readBuffer, char* text) const;

  template <typename T>
  bool ReadValue(const KeyPattern& pattern, Encoding encoding, DWORD readBuffer, T* value) const {
    char text[kLongRead];  // lives for the call only: reads never allocate
    if (!ReadKey(pattern, readBuffer, text)) return false;
    DecodeValue(encoding, text, value);
    return true;
  }

  template <std::size_t N, typename... V, std::size_t... I>
  int WriteAll(const KeyFamily<N>& family, std::index_sequence<I...>, const V&... values) const {
    static_assert(N <= kMaxFamilyKeys, "a family has at most four keys");
    const ValueText texts[N] = {ValueText(family.encoding, values)...};
    const char* const pointers[N] = {texts[I].c_str()...};
    return WriteKeys(family.patterns.data(), pointers, N);
  }

  template <std::size_t N, typename... T, std::size_t... I>
  int ReadAll(const KeyFamily<N>& family, std::index_sequence<I...>, T*... outs) const {
    std::tuple<T...> held;
    if (!(ReadValue(family.patterns[I], family.encoding, family.readBuffer, &std::get<I>(held)) &&
          ...))
      return 0;
    ((*outs = std::move(std::get<I>(held))), ...);
    return 1;
  }

  template <std::size_t N, typename... T, std::size_t... I>
  int ReadEachOf(const KeyFamily<N>& family, std::index_sequence<I...>, T*... outs) const {
    return (ReadValue(family.patterns[I], family.encoding, family.readBuffer, outs) && ...);
  }

  State m_state;
  const char* m_file;  // the caller's
  ShortText m_section;
  ShortText m_fill;
};

}  // namespace tolvex

#endif  // TOLVEX_TEMPLATE_PROFILEACCESS_H
