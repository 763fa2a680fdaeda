#include "query/FoldedSearch.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace quillary {

namespace {

// What most texts are full of, the commonest first. Every other byte counts as rarer.
constexpr std::string_view kCommonBytes = " EATIONRSLDHCUMGPB0123456789FYWKV";

constexpr std::size_t kBlock = 64;

}  // namespace

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
    ChooseProbes();
}

// The two rarest bytes of the text. One that has more than two cases (a Greek sigma) is none.
void FoldedSearch::ChooseProbes() {
    std::vector<std::size_t> places;
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        const auto folded = static_cast<std::uint8_t>(m_text[at]);
        if (std::count(m_fold.begin(), m_fold.end(), folded) <= 2) places.push_back(at);
    }
    if (places.empty()) return;
    std::stable_sort(places.begin(), places.end(), [this](std::size_t a, std::size_t b) {
        return kCommonBytes.find(m_text[a]) > kCommonBytes.find(m_text[b]);
    });
    m_rare = ProbeAt(places.front());
    m_second = ProbeAt(places[places.size() > 1 ? 1 : 0]);
    m_hasProbes = true;
}

FoldedSearch::Probe FoldedSearch::ProbeAt(std::size_t at) const {
    Probe probe{at, {m_text[at], m_text[at]}};
    std::size_t count = 0;
    for (std::size_t b = 0; b < m_fold.size(); ++b) {
        if (m_fold[b] == static_cast<std::uint8_t>(m_text[at])) probe.cases[count++] = static_cast<char>(b);
    }
    return probe;
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

std::size_t FoldedSearch::Candidate(std::string_view bytes, char other) const {
    if (!m_hasProbes) return bytes.empty() ? bytes.npos : 0;
    const auto isOne = [this, other](const char* at) {
        const char rare = at[m_rare.at];
        const char second = at[m_second.at];
        const bool begins = ((rare == m_rare.cases[0]) | (rare == m_rare.cases[1])) &
                            ((second == m_second.cases[0]) | (second == m_second.cases[1]));
        return begins | (*at == other);
    };
    std::size_t i = 0;
    for (; i + kBlock + m_text.size() <= bytes.size(); i += kBlock) {
        // No way out of this loop, so that it becomes one over whole registers.
        unsigned char any = 0;
        for (std::size_t k = 0; k < kBlock; ++k) any |= static_cast<unsigned char>(isOne(bytes.data() + i + k));
        if (any != 0) break;
    }
    for (; i + m_text.size() <= bytes.size(); ++i) {
        if (isOne(bytes.data() + i)) return i;
    }
    return bytes.find(other, i);
}

}  // namespace quillary
