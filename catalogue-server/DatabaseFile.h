// Reads a published database whole, as its programs save it: under the shared lock, and with a stopped save completed.
#pragma once

#include <memory>
#include <string>

#include "db/AnsiText.h"
#include "db/Image.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

/// What clients take. A larger file is not published.
inline constexpr std::uint64_t kLargestPublished = 256u << 20;

struct WholeDatabase {
    std::shared_ptr<const Image> image;
    FileStamp stamp;
};

/// Never waits: Busy while another program writes the file. NotAFile for what is no database. `path` is the file's own,
/// by which its recovery copy is known.
[[nodiscard]] bool ReadWholeDatabase(PosixFile file, const Path& path, WholeDatabase& database, FileError& error);

/// What a database says about itself, UTF-8. One with a password says no more than its name.
struct DatabaseTexts {
    std::string name;
    std::string infoText;
};
[[nodiscard]] DatabaseTexts TextsOf(std::string_view image, const AnsiText& page);

}  // namespace quillary
