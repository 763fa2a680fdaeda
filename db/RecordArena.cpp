#include "db/RecordArena.h"

namespace quillary {

const char* RecordArena::Store(std::string_view bytes) {
    if (bytes.size() > m_left) {
        const std::size_t size = bytes.size() > kChunkSize / 4 ? bytes.size() : kChunkSize;
        auto chunk = std::make_unique_for_overwrite<char[]>(size);
        if (size == bytes.size()) {  // large: a chunk of its own, the present one goes on
            bytes.copy(chunk.get(), bytes.size());
            m_chunks.push_back(std::move(chunk));
            return m_chunks.back().get();
        }
        m_next = chunk.get();
        m_left = size;
        m_chunks.push_back(std::move(chunk));
    }
    char* stored = m_next;
    bytes.copy(stored, bytes.size());
    m_next += bytes.size();
    m_left -= bytes.size();
    return stored;
}

}  // namespace quillary
