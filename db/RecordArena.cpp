#include "db/RecordArena.h"

namespace quillary {

void RecordArena::Begin(std::size_t chunkSize) {
    m_chunks.emplace_back(chunkSize);
    m_next = m_chunks.back().Data();
    m_left = chunkSize;
}

void RecordArena::Reserve(std::size_t bytes) {
    if (bytes > m_left) Begin(bytes);
}

const char* RecordArena::Store(std::string_view bytes) {
    if (bytes.size() > m_left) {
        if (bytes.size() > kChunkSize / 4) {  // large: a chunk of its own, the present one goes on
            m_chunks.emplace_back(bytes);
            return m_chunks.back().Data();
        }
        Begin(kChunkSize);
    }
    char* stored = m_next;
    bytes.copy(stored, bytes.size());
    m_next += bytes.size();
    m_left -= bytes.size();
    return stored;
}

}  // namespace quillary
