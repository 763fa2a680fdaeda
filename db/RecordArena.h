// Keeps new and changed records alive until a save moves them into the next image. Records are never changed or
// removed, so copies of a document's state stay valid.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

namespace quillary {

class RecordArena {
  public:
    /// A copy of `bytes` that lives as long as the arena.
    [[nodiscard]] const char* Store(std::string_view bytes);

  private:
    static constexpr std::size_t kChunkSize = 256 * 1024;
    std::vector<std::unique_ptr<char[]>> m_chunks;
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

}  // namespace quillary
