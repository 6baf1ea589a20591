// A growable run of bytes whose new room is left for its writer to fill, unlike a
// std::string's: the indexed form adds a line at a time to its buffer of changed lines, and
// a line added is written once, straight into place. Room reserved ahead is only memory once
// it is written. A plain value; a copy holds just the bytes.
#ifndef TOLVEX_PLATFORM_BYTEBUFFER_H
#define TOLVEX_PLATFORM_BYTEBUFFER_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace tolvex::platform {

class ByteBuffer {
 public:
  ByteBuffer() = default;
  ByteBuffer(const ByteBuffer& other) { Append(other.view()); }
  ByteBuffer& operator=(const ByteBuffer& other) {
    if (this != &other) {
      ByteBuffer copy(other);
      *this = std::move(copy);
    }
    return *this;
  }
  ByteBuffer(ByteBuffer&& other) noexcept { *this = std::move(other); }
  ByteBuffer& operator=(ByteBuffer&& other) noexcept {
    m_bytes = std::move(other.m_bytes);
    m_size = other.m_size;
    m_capacity = other.m_capacity;
    other.m_size = other.m_capacity = 0;
    return *this;
  }

  size_t size() const { return m_size; }
  size_t capacity() const { return m_capacity; }
  std::string_view view() const { return std::string_view(m_bytes.get(), m_size); }
  char operator[](size_t i) const { return m_bytes[i]; }

  // Room for at least `bytes` in all.
  void Reserve(size_t bytes) {
    if (bytes > m_capacity) Reallocate(bytes);
  }
  // `count` more bytes at the end, for the caller to write.
  char* Extend(size_t count) {
    if (m_capacity - m_size < count) Reallocate(m_size + count > 2 * m_capacity ? m_size + count
                                                                               : 2 * m_capacity);
    char* at = m_bytes.get() + m_size;
    m_size += count;
    return at;
  }
  void Append(std::string_view bytes) {
    if (!bytes.empty()) std::memcpy(Extend(bytes.size()), bytes.data(), bytes.size());
  }
  // Empty, with its memory given back.
  void Release() { *this = ByteBuffer(); }

 private:
  void Reallocate(size_t capacity) {
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (m_size != 0) std::memcpy(bytes.get(), m_bytes.get(), m_size);
    m_bytes = std::move(bytes);
    m_capacity = capacity;
  }

  std::unique_ptr<char[]> m_bytes;
  size_t m_size = 0;
  size_t m_capacity = 0;
};

}  // namespace tolvex::platform

#endif  // TOLVEX_PLATFORM_BYTEBUFFER_H
