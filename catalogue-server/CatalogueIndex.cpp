#include "catalogue-server/CatalogueIndex.h"

#include <algorithm>
#include <utility>

#include "catalogue-server/Texts.h"
#include "db/RecoveryFile.h"

namespace quillary {

namespace {

constexpr char kTitleEnd = '\0';

}  // namespace

void SetIds(Publication& publication) {
    const std::string digits = HexText(Hash64(publication.path));
    publication.docId = "d" + digits;
    publication.fileId = "f" + digits;
}

CatalogueIndex::CatalogueIndex(Publications publications) {
    std::vector<std::pair<std::string, std::shared_ptr<const Publication>>> ordered;
    ordered.reserve(publications.size());
    for (auto& publication : publications) {
        std::string folded = FoldedText(publication->title);
        std::replace(folded.begin(), folded.end(), kTitleEnd, ' ');
        ordered.emplace_back(std::move(folded), std::move(publication));
    }
    std::sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) {
        return std::tie(a.first, a.second->path) < std::tie(b.first, b.second->path);
    });
    m_rows.reserve(ordered.size());
    m_titleBegins.reserve(ordered.size() + 1);
    for (auto& [folded, publication] : ordered) {
        if (!m_rowsByFileId.emplace(publication->fileId, m_rows.size()).second) continue;
        m_rows.push_back(std::move(publication));
        m_titleBegins.push_back(m_titles.size());
        m_titles.append(folded).push_back(kTitleEnd);
    }
    m_titleBegins.push_back(m_titles.size());
    for (const char c : m_titles) ++m_titleBytes[static_cast<unsigned char>(c)];
    NumberCategories();
}

void CatalogueIndex::NumberCategories() {
    m_categoryOfRow.reserve(m_rows.size());
    for (const auto& row : m_rows) {
        const auto next = static_cast<std::uint32_t>(m_categories.size());
        const auto [number, isNew] = m_categoryNumbers.emplace(FoldedText(row->category), next);
        if (isNew) m_categories.push_back(row->category);
        m_categoryOfRow.push_back(number->second);
    }
}

SearchPage CatalogueIndex::Search(const SearchTerms& terms, std::size_t start, std::size_t size) const {
    SearchPage page;
    page.first = start;
    std::uint32_t category = kAnyCategory;
    if (!terms.category.empty()) {
        const auto known = m_categoryNumbers.find(FoldedText(terms.category));
        if (known == m_categoryNumbers.end()) return page;
        category = known->second;
    }
    const auto count = [&](std::size_t row) {
        if (category != kAnyCategory && m_categoryOfRow[row] != category) return;
        if (page.total >= start && page.rows.size() < size) page.rows.push_back(m_rows[row].get());
        ++page.total;
    };
    const std::string wanted = FoldedText(terms.title);
    if (wanted.empty()) {
        for (std::size_t row = 0; row < m_rows.size(); ++row) count(row);
        return page;
    }
    if (wanted.find(kTitleEnd) != wanted.npos) return page;
    std::size_t row = 0;
    for (std::size_t at = 0; (at = FindInTitles(wanted, at)) != std::string::npos; at = m_titleBegins[++row]) {
        while (m_titleBegins[row + 1] <= at) ++row;
        count(row);
    }
    return page;
}

std::size_t CatalogueIndex::FindInTitles(std::string_view wanted, std::size_t at) const {
    // By its rarest byte, which the library finds many bytes at a time.
    const auto rarest = std::min_element(wanted.begin(), wanted.end(), [this](char a, char b) {
        return m_titleBytes[static_cast<unsigned char>(a)] < m_titleBytes[static_cast<unsigned char>(b)];
    });
    const auto before = static_cast<std::size_t>(rarest - wanted.begin());
    for (at = m_titles.find(*rarest, at + before); at != m_titles.npos; at = m_titles.find(*rarest, at + 1)) {
        if (m_titles.compare(at - before, wanted.size(), wanted) == 0) return at - before;
    }
    return m_titles.npos;
}

std::shared_ptr<const Publication> CatalogueIndex::Find(std::string_view docId, std::string_view fileId) const {
    std::string id(fileId);
    if (id.empty() && docId.starts_with('d')) id = "f" + std::string(docId.substr(1));
    const auto row = m_rowsByFileId.find(id);
    if (row == m_rowsByFileId.end()) return nullptr;
    const auto& publication = m_rows[row->second];
    return docId.empty() || publication->docId == docId ? publication : nullptr;
}

}  // namespace quillary
