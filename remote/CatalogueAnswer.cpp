#include "remote/CatalogueAnswer.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>

#include "db/FieldValue.h"

namespace quillary {

namespace {

constexpr std::string_view kHeaderEnd = ":";
constexpr std::string_view kFieldEnd = "^!";
// A hundred times what a query asks for at most: a list that a person reads, not what fills the memory.
constexpr std::int64_t kMostResults = 10000;

class Tokens {
  public:
    explicit Tokens(std::string_view text) : m_text(text.substr(0, text.find('\0'))) {}

    // Up to the terminator, or to the end when there is none.
    std::string_view Next(std::string_view terminator) {
        const auto end = m_text.find(terminator);
        const std::string_view token = m_text.substr(0, end);
        m_text.remove_prefix(end == std::string_view::npos ? m_text.size() : end + terminator.size());
        return token;
    }
    [[nodiscard]] bool AtEnd() const { return m_text.empty(); }

  private:
    std::string_view m_text;
};

std::string Rating(std::string_view received) {
    const double rating = ReadNumber(received);
    if (rating == 0) return std::string(received);
    // A double has up to 309 digits before the point.
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%0.2lf", rating))};
}

}  // namespace

CataloguePage ReadPage(std::string_view answer) {
    Tokens tokens(answer);
    CataloguePage page;
    page.first = ReadDecimal(tokens.Next(kHeaderEnd));
    page.last = ReadDecimal(tokens.Next(kHeaderEnd));
    page.total = ReadDecimal(tokens.Next(kHeaderEnd));
    const auto claimed = std::int64_t{page.last} - page.first + 1;
    const auto most = claimed < 0 ? kMostResults : std::min(claimed, kMostResults);
    for (std::int64_t i = 0; i < most && !tokens.AtEnd(); ++i) {
        auto result = std::make_unique<CRemoteResult>();
        result->name = tokens.Next(kFieldEnd);
        result->docId = tokens.Next(kFieldEnd);
        result->fileId = tokens.Next(kFieldEnd);
        result->kind = tokens.Next(kFieldEnd);
        result->size = tokens.Next(kFieldEnd);
        page.results.push_back(std::move(result));
    }
    return page;
}

CRemoteDetails ReadDetails(std::string_view answer) {
    Tokens tokens(answer);
    CRemoteDetails details;
    details.author = tokens.Next(kFieldEnd);
    details.category = tokens.Next(kFieldEnd);
    details.description = tokens.Next(kFieldEnd);
    details.language = tokens.Next(kFieldEnd);
    details.lastUpdated = tokens.Next(kFieldEnd);
    details.notes = tokens.Next(kFieldEnd);
    details.rating = Rating(tokens.Next(kFieldEnd));
    details.downloads = tokens.Next(kFieldEnd);
    return details;
}

}  // namespace quillary
