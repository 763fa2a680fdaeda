// What is published, in the order in which it is listed, with the search. Never changes: a new state is a new index.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue-server/Publication.h"

namespace quillary {

/// UTF-8; an empty text lets everything through. Case does not count.
struct SearchTerms {
    std::string title;     // contained in the title
    std::string category;  // equal to the category
};

struct SearchPage {
    std::size_t total = 0;  // of all that match
    std::size_t first = 0;  // what the first of `rows` is among them
    std::vector<const Publication*> rows;
};

class CatalogueIndex {
  public:
    using Publications = std::vector<std::shared_ptr<const Publication>>;

    /// Orders by title. Of two publications with one id the first path wins.
    explicit CatalogueIndex(Publications publications = {});
    CatalogueIndex(const CatalogueIndex&) = delete;  // it points into itself
    CatalogueIndex& operator=(const CatalogueIndex&) = delete;

    [[nodiscard]] std::size_t Size() const { return m_rows.size(); }
    [[nodiscard]] SearchPage Search(const SearchTerms& terms, std::size_t start, std::size_t size) const;
    /// Null when there is none. Both ids must be its own; an empty one is not asked for.
    [[nodiscard]] std::shared_ptr<const Publication> Find(std::string_view docId, std::string_view fileId) const;
    /// Every category once, as it is written first.
    [[nodiscard]] const std::vector<std::string>& Categories() const { return m_categories; }

  private:
    static constexpr std::uint32_t kAnyCategory = static_cast<std::uint32_t>(-1);

    void NumberCategories();
    /// Where `wanted` is found first from `at` on, or npos.
    [[nodiscard]] std::size_t FindInTitles(std::string_view wanted, std::size_t at) const;

    Publications m_rows;
    // The folded titles one after the other, each with an end that no title holds: one pass looks through all of them.
    std::string m_titles;
    std::vector<std::size_t> m_titleBegins;       // and the end of the last
    std::array<std::size_t, 256> m_titleBytes{};  // how often each byte is there
    std::vector<std::uint32_t> m_categoryOfRow;   // index into m_categories
    std::vector<std::string> m_categories;
    std::unordered_map<std::string, std::uint32_t> m_categoryNumbers;  // by the folded name
    std::unordered_map<std::string_view, std::size_t> m_rowsByFileId;
};

}  // namespace quillary
