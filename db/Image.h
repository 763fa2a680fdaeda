// The bytes of a whole database file in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace quillary {

/// Uninitialised until it is filled, so that reading a file touches each byte once.
class Image {
  public:
    Image() = default;
    explicit Image(std::size_t size) : m_bytes(std::make_unique_for_overwrite<char[]>(size)), m_size(size) {}
    explicit Image(std::string_view bytes) : Image(bytes.size()) { bytes.copy(Data(), bytes.size()); }

    [[nodiscard]] char* Data() { return m_bytes.get(); }
    [[nodiscard]] std::size_t Size() const { return m_size; }
    [[nodiscard]] std::string_view Bytes() const { return {m_bytes.get(), m_size}; }
    /// For a file that turned out shorter than expected.
    void Shrink(std::size_t size) { m_size = size < m_size ? size : m_size; }

  private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
};

}  // namespace quillary
