// The bytes of a published file as they were at one moment, whole: what is sent from it cannot change under way, and no
// lock is held while a slow client reads.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "db/Image.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

class FileCopy {
  public:
    /// Keeps a small image; puts a larger one into a file of its own that lies in memory alone. Null when there is no
    /// room for it.
    [[nodiscard]] static std::shared_ptr<const FileCopy> Make(std::shared_ptr<const Image> image);

    [[nodiscard]] std::uint64_t Size() const { return m_size; }
    /// Of a small copy, all of it.
    [[nodiscard]] std::string_view Bytes() const { return m_image ? m_image->Bytes() : std::string_view{}; }
    /// -1 for a small copy.
    [[nodiscard]] int Descriptor() const { return m_file.Descriptor(); }

  private:
    std::uint64_t m_size = 0;
    std::shared_ptr<const Image> m_image;
    PosixFile m_file;
};

}  // namespace quillary
