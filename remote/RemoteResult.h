// One entry of the catalogue's answers: a published database, a package, or a file inside a package.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace quillary {

/// Texts in the code page, as received.
struct CRemoteDetails {
    std::string author;
    std::string category;
    std::string description;
    std::string language;
    std::string lastUpdated;
    std::string notes;
    std::string rating;  // with two decimals, unless it is zero or no number
    std::string downloads;
};

struct CRemoteResult {
    // In the code page, as received.
    std::string name;
    std::string docId;  // of a file inside a package: its path on the catalogue server
    std::string fileId;
    std::string kind;
    std::string size;  // in kilobytes; of a package whose files are known, their sum with one decimal

    std::vector<std::unique_ptr<CRemoteResult>> children;
    bool hasFetchedFiles = false;  // of a package
    std::unique_ptr<CRemoteDetails> details;

    /// Marked for download.
    bool isTicked = false;

    [[nodiscard]] bool IsSingleFile() const { return kind != "zip"; }
};

}  // namespace quillary
