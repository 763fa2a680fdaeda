// Keeps new and changed records alive until a save moves them into the next image. Records are never changed or
// removed, so copies of a document's state stay valid.
#pragma once

#include <string_view>
#include <vector>

#include "db/Image.h"

namespace quillary {

class RecordArena {
  public:
    /// Takes the memory for `bytes` more in one piece, which is cheaper than many.
    void Reserve(std::size_t bytes);
    /// A copy of `bytes` that lives as long as the arena.
    [[nodiscard]] const char* Store(std::string_view bytes);

  private:
    void Begin(std::size_t chunkSize);

    static constexpr std::size_t kChunkSize = 256 * 1024;
    std::vector<Image> m_chunks;
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

}  // namespace quillary
