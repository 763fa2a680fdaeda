// The bytes of a whole database file in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <string_view>

namespace quillary {

/// Uninitialised until it is filled, so that reading a file touches each byte once.
class Image {
  public:
    Image() = default;
    /// In memory of the default resource, so that a program can choose how it holds files.
    explicit Image(std::size_t size) : Image(size, std::pmr::get_default_resource()) {}
    explicit Image(std::string_view bytes) : Image(bytes.size()) { bytes.copy(Data(), bytes.size()); }

    [[nodiscard]] char* Data() { return m_bytes.get(); }
    [[nodiscard]] std::size_t Size() const { return m_size; }
    [[nodiscard]] std::string_view Bytes() const { return {m_bytes.get(), m_size}; }
    /// For a file that turned out shorter than expected.
    void Shrink(std::size_t size) { m_size = size < m_size ? size : m_size; }

  private:
    struct Release {
        std::pmr::memory_resource* resource;
        std::size_t size;
        void operator()(char* bytes) const { resource->deallocate(bytes, size); }
    };
    Image(std::size_t size, std::pmr::memory_resource* resource)
        : m_bytes(static_cast<char*>(resource->allocate(size)), Release{resource, size}), m_size(size) {}

    std::unique_ptr<char[], Release> m_bytes;
    std::size_t m_size = 0;
};

}  // namespace quillary
