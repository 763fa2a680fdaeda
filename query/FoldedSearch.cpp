#include "query/FoldedSearch.h"

#include <algorithm>
#include <limits>

namespace quillary {

FoldedSearch::FoldedSearch(std::string folded, const AnsiText& page) : m_text(std::move(folded)), m_fold(page.Fold()) {
    // A shift shorter than it could be misses nothing.
    const std::size_t last = m_text.size() - 1;
    const auto shift = [](std::size_t distance) {
        return static_cast<std::uint8_t>(std::min<std::size_t>(distance, std::numeric_limits<std::uint8_t>::max()));
    };
    std::array<std::uint8_t, 256> ofFolded{};
    ofFolded.fill(shift(m_text.size()));
    for (std::size_t i = 0; i < last; ++i) ofFolded[static_cast<unsigned char>(m_text[i])] = shift(last - i);
    std::uint8_t& ofLast = ofFolded[static_cast<unsigned char>(m_text[last])];
    m_shiftOfLast = ofLast;
    ofLast = 0;
    for (std::size_t b = 0; b < m_shift.size(); ++b) m_shift[b] = ofFolded[m_fold[b]];
}

bool FoldedSearch::Matches(const char* at) const {
    return std::equal(m_text.begin(), m_text.end(), at, [this](char folded, char inBytes) {
        return static_cast<unsigned char>(folded) == m_fold[static_cast<unsigned char>(inBytes)];
    });
}

bool FoldedSearch::IsIn(std::string_view bytes) const {
    for (std::size_t last = m_text.size() - 1; last < bytes.size();) {
        if (const std::uint8_t shift = m_shift[static_cast<unsigned char>(bytes[last])]) {
            last += shift;
        } else if (Matches(bytes.data() + last + 1 - m_text.size())) {
            return true;
        } else {
            last += m_shiftOfLast;
        }
    }
    return false;
}

}  // namespace quillary
