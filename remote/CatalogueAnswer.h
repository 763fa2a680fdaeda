// Reads the catalogue's answers, in which nothing is trusted.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "remote/RemoteResult.h"

namespace quillary {

struct CataloguePage {
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::int32_t total = 0;
    std::vector<std::unique_ptr<CRemoteResult>> results;
};

/// "first:last:total:" and behind it last - first + 1 results, or as many as there are when that is less than none or
/// more than there are; 10,000 at most.
[[nodiscard]] CataloguePage ReadPage(std::string_view answer);

[[nodiscard]] CRemoteDetails ReadDetails(std::string_view answer);

}  // namespace quillary
