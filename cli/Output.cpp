#include "cli/Output.h"

#include <algorithm>
#include <cstring>

#include "cli/Text.h"

namespace quillary {

void Output::Grow(std::size_t size) {
    const std::size_t capacity = std::max({m_size + size, 2 * m_capacity, 2 * kPiece});
    auto bytes = std::make_unique_for_overwrite<char[]>(capacity);
    if (m_size > 0) std::memcpy(bytes.get(), m_bytes.get(), m_size);
    m_bytes = std::move(bytes);
    m_capacity = capacity;
}

bool Output::Flush() {
    if (m_result == WriteResult::Done) {
        const std::string_view bytes(m_bytes.get(), m_size);
        m_result = m_isTerminal
                       ? WriteAll(StandardStream::Output, ShowControls(bytes, "\r\n\t", m_codePointPrefix), m_reason)
                       : WriteAll(StandardStream::Output, bytes, m_reason);
    }
    m_size = 0;
    return m_result == WriteResult::Done;
}

}  // namespace quillary
