// Looks for a text in stored bytes of a single-byte page, case ignored.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "db/AnsiText.h"

namespace quillary {

class FoldedSearch {
  public:
    /// `folded` is AnsiText::FoldedBytes of the text, not empty. The page must outlive the search.
    FoldedSearch(std::string folded, const AnsiText& page);
    [[nodiscard]] bool IsIn(std::string_view bytes) const;
    /// The first place that is worth a look: the text may begin there, or it holds `other`. npos when there is none.
    /// As fast as memory is read, whatever the text.
    [[nodiscard]] std::size_t Candidate(std::string_view bytes, char other) const;

  private:
    // A byte of the text, and the two that stand for it in either case.
    struct Probe {
        std::size_t at = 0;
        char cases[2] = {};
    };

    [[nodiscard]] Probe ProbeAt(std::size_t at) const;
    [[nodiscard]] bool Matches(const char* at) const;
    void ChooseProbes();

    std::string m_text;
    const std::array<std::uint8_t, 256>& m_fold;
    // Horspool's search: how far the text moves on when this byte stands below its last one; 0 when the two are equal.
    std::array<std::uint8_t, 256> m_shift{};
    std::uint8_t m_shiftOfLast = 0;  // instead of the 0, when the rest did not match
    Probe m_rare;
    Probe m_second;
    bool m_hasProbes = false;
};

}  // namespace quillary
