#include "db/ListedDatabase.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "db/Bytes.h"
#include "db/Container.h"
#include "db/RecordBuffer.h"

namespace quillary {

namespace {

// One read is enough for a file of a few hundred records.
constexpr std::size_t kWindowSize = 8192;

/// The part of the file that was read last.
class Window {
  public:
    Window(const ReadPart& read, std::uint64_t fileSize) : m_read(read), m_fileSize(fileSize) {}

    /// What there is of `size` bytes (at most kWindowSize) at `offset`. Valid until the next call.
    std::string_view At(std::uint64_t offset, std::size_t size) {
        if (offset >= m_fileSize) return {};
        size = static_cast<std::size_t>(std::min<std::uint64_t>(size, m_fileSize - offset));
        if (offset < m_begin || offset + size > m_begin + m_size) {
            m_begin = offset;
            m_size = std::min(m_read(offset, m_bytes.data(), m_bytes.size()), m_bytes.size());
        }
        return std::string_view(m_bytes.data(), m_size).substr(static_cast<std::size_t>(offset - m_begin), size);
    }

  private:
    const ReadPart& m_read;
    std::uint64_t m_fileSize;
    std::uint64_t m_begin = 0;
    std::size_t m_size = 0;
    std::array<char, kWindowSize> m_bytes;
};

/// Where the last FieldLabels record lies by the list, and which of the others are there.
struct SchemaRecords {
    bool hasLabels = false;
    bool hasTypes = false;
    bool hasLengths = false;
    std::uint64_t labelsBegin = 0;
    std::uint64_t labelsEnd = 0;
};

SchemaRecords FindSchema(Window& window, const DatabaseHeader& header, std::uint64_t fileSize) {
    const std::uint64_t room = (fileSize - kHeaderSize) / kRecordEntrySize;
    const std::uint64_t count = std::min<std::uint64_t>(header.RecordCount(), room);
    SchemaRecords schema;
    bool endsAtNext = false;
    std::uint32_t previous = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::string_view bytes = window.At(kHeaderSize + i * kRecordEntrySize, kRecordEntrySize);
        if (bytes.size() < kRecordEntrySize) break;
        const std::uint32_t offset = LoadBig32(bytes.data());
        if (endsAtNext) schema.labelsEnd = offset;
        endsAtNext = false;
        switch (static_cast<unsigned char>(bytes[4]) & ~kDirtyBit) {
            case kCategoryFieldLabels:
                schema.hasLabels = true;
                schema.labelsBegin = offset < previous ? fileSize : offset;  // an impossible one has no entries
                schema.labelsEnd = fileSize;
                endsAtNext = true;
                break;
            case kCategoryDataType:
                schema.hasTypes = true;
                break;
            case kCategoryFieldLengths:
                // The very first record of a file without an application-info block counts as missing.
                schema.hasLengths = i > 0 || header.AppInfoOffset() != 0;
                break;
            default:
                break;
        }
        previous = offset;
    }
    return schema;
}

}  // namespace

bool IsListedDatabase(const ReadPart& read, std::uint64_t fileSize) {
    Window window(read, fileSize);
    const auto header = DatabaseHeader::Read(window.At(0, kHeaderSize));
    if (!header || header->Version() != 0) return false;
    const SchemaRecords schema = FindSchema(window, *header, fileSize);
    if (!schema.hasLabels || !schema.hasTypes || !schema.hasLengths) return false;
    const std::uint64_t end = std::min(schema.labelsEnd, fileSize);
    if (end <= schema.labelsBegin) return false;
    // Far more than twenty names need.
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(end - schema.labelsBegin, kWindowSize));
    const std::string_view record = window.At(schema.labelsBegin, size);
    if (record.size() < kRecordHeader.size()) return false;
    const auto name = FindEntry(EntriesOf(record.substr(kRecordHeader.size())), 0);
    return name && !name->empty();
}

}  // namespace quillary
