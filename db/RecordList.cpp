#include "db/RecordList.h"

#include <algorithm>

namespace quillary {

namespace {

constexpr std::size_t kAttributesInEntry = 4;  // behind the offset

}  // namespace

RecordList::RecordList(std::string_view image, const DatabaseHeader& header)
    : m_image(image), m_first(header.AppInfoOffset() != 0 ? 1 : 0) {
    const std::size_t room = (image.size() - kHeaderSize) / kRecordEntrySize;
    const std::size_t listed = std::min<std::size_t>(header.RecordCount(), room);
    m_end = m_first + listed;
    m_unlisted = header.RecordCount() - listed;
}

std::uint8_t RecordList::AttributesOf(std::size_t i) const {
    return static_cast<std::uint8_t>(At(i)[kAttributesInEntry]);
}

std::uint64_t RecordList::EndOf(std::size_t i) const {
    const std::uint64_t next = i + 1 < m_end ? OffsetOf(i + 1) : m_image.size();
    return std::min<std::uint64_t>(next, m_image.size());
}

std::string_view RecordList::BytesOf(std::size_t i) const {
    const std::uint64_t begin = OffsetOf(i);
    if (begin > m_image.size() || (i > m_first && begin < OffsetOf(i - 1))) return {};
    const std::uint64_t end = EndOf(i);
    if (end < begin + kRecordHeader.size()) return {};
    return m_image.substr(begin + kRecordHeader.size(), end - begin - kRecordHeader.size());
}

}  // namespace quillary
