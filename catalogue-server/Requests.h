// What a request line asks for. Everything in it may be hostile; nothing in it is ever used as a path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue-server/CatalogueIndex.h"
#include "db/AnsiText.h"

namespace quillary {

enum class RequestKind : std::uint8_t {
    Unknown,
    Search,
    Details,
    PackageFiles,  // the files inside a package
    Download,      // a database or a whole package, by its file id
    PackageFile,   // one file inside a package; docId holds the file's own id
    WebPage,       // for a browser
};

struct Request {
    RequestKind kind = RequestKind::Unknown;
    SearchTerms terms;  // UTF-8
    std::size_t start = 0;
    std::size_t size = 0;
    std::string docId;
    std::string fileId;
};

inline constexpr std::size_t kDefaultPage = 25;
inline constexpr std::size_t kLargestPage = 100;

/// `target` is the second word of a request line as it came. The catalogue's clients append title and category as they
/// were typed, with only what a request line cannot hold percent-encoded, in the code page: so a title may hold "&" and
/// "+" and ends where the category begins. A browser's form is UTF-8, encoded throughout.
[[nodiscard]] Request ParseRequest(std::string_view target, const AnsiText& codePage);

}  // namespace quillary
