// The catalogue as a page for a browser: a search, the list, links to download. Without scripts.
#pragma once

#include <string>

#include "catalogue-server/CatalogueIndex.h"

namespace quillary {

/// UTF-8.
[[nodiscard]] std::string WebPage(const CatalogueIndex& index, const SearchTerms& terms, const SearchPage& found,
                                  std::size_t pageSize);

/// What the page may load, for the header of this name: its own style and nothing else.
inline constexpr const char* kContentSecurityPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'";

}  // namespace quillary
