// Where the records of a database image stand. The list is read where it is in the image, which must outlive it.
#pragma once

#include <cstdint>
#include <string_view>

#include "db/Bytes.h"
#include "db/Container.h"

namespace quillary {

class RecordList {
  public:
    RecordList() = default;
    /// `header` is the image's own. A count larger than the image has room for lists what is there.
    RecordList(std::string_view image, const DatabaseHeader& header);

    [[nodiscard]] std::string_view Image() const { return m_image; }
    /// Records count from 1 when index 0 stands for the application-info block, else from 0.
    [[nodiscard]] std::size_t First() const { return m_first; }
    /// Behind the last index.
    [[nodiscard]] std::size_t End() const { return m_end; }
    /// Records that the header counts and the file is too short to list.
    [[nodiscard]] std::size_t UnlistedCount() const { return m_unlisted; }
    /// Where the list ends in the image, in bytes.
    [[nodiscard]] std::size_t BytesEnd() const { return kHeaderSize + (m_end - m_first) * kRecordEntrySize; }

    [[nodiscard]] std::uint32_t OffsetOf(std::size_t index) const { return LoadBig32(At(index)); }
    [[nodiscard]] std::uint8_t AttributesOf(std::size_t index) const;
    /// Where the next record begins, or the image ends.
    [[nodiscard]] std::uint64_t EndOf(std::size_t index) const;
    /// What stands behind the record header; empty for an impossible offset.
    [[nodiscard]] std::string_view BytesOf(std::size_t index) const;

  private:
    [[nodiscard]] const char* At(std::size_t index) const {
        return m_image.data() + kHeaderSize + (index - m_first) * kRecordEntrySize;
    }

    std::string_view m_image;
    std::size_t m_first = 0;
    std::size_t m_end = 0;
    std::size_t m_unlisted = 0;
};

}  // namespace quillary
