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

  private:
    [[nodiscard]] bool Matches(const char* at) const;

    std::string m_text;
    const std::array<std::uint8_t, 256>& m_fold;
    // Horspool's search: how far the text moves on when this byte stands below its last one; 0 when the two are equal.
    std::array<std::uint8_t, 256> m_shift{};
    std::uint8_t m_shiftOfLast = 0;  // instead of the 0, when the rest did not match
};

}  // namespace quillary
