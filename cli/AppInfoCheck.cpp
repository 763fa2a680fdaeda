#include "cli/AppInfoCheck.h"

#include "db/Bytes.h"
#include "db/Layout.h"

namespace quillary {

namespace {

constexpr std::size_t kSelectorAt = 40;  // in a condition
constexpr std::size_t kCodesAt = 41;

std::string Number(std::uint64_t number) { return std::to_string(number); }

}  // namespace

void CheckPaddedText(std::string_view image, std::uint64_t at, std::size_t size, const std::string& what,
                     Departures& departures) {
    const std::string_view text = image.substr(at, size);
    const auto end = text.find('\0');
    if (end == text.npos) {
        departures.Report(at, what + " has no end");
    } else if (const auto stray = text.find_first_not_of('\0', end); stray != text.npos) {
        departures.Report(at + stray, what + " is not filled up with NUL");
    }
}

void AppInfoCheck::Check(std::uint64_t at, std::uint64_t listEnd, std::uint64_t records) {
    m_at = at;
    if ((m_at == 0 ? records : m_at) == listEnd + kGapSize) CheckGap(listEnd);
    if (m_at == 0) {
        if (records > listEnd + kGapSize && records <= m_image.size()) {
            Report(listEnd, "Behind the record list are bytes that belong to nothing");
        }
        return;
    }
    if (m_at >= m_image.size() || m_at < listEnd) {
        Report(kAppInfoOffsetAt, "The application-info block begins at " + Number(m_at) +
                                     (m_at < listEnd ? ", inside the record list" : ", outside the file"));
        return;
    }
    if (m_at != listEnd + kGapSize) {
        Report(kAppInfoOffsetAt, "The application-info block does not begin two bytes behind the record list");
    }
    const std::uint64_t size = records > m_at ? records - m_at : m_image.size() - m_at;
    if (size < kAppInfoWrittenSize || m_image.size() - m_at < kAppInfoWrittenSize) {
        Report(m_at, "The application-info block is shorter than " + Number(kAppInfoWrittenSize) + " bytes");
        return;
    }
    constexpr std::size_t kWideSize = kAppInfoFixedSize + kMaxSortKeys * kWideSortKeySize;
    if (size != kAppInfoWrittenSize && size != kWideSize) {
        Report(m_at, "Behind the application-info block are bytes that belong to nothing");
    }
    const std::uint16_t formatVersion = LoadBig16(At(m_at + kFormatVersionAt));
    if (formatVersion > kFormatVersion) {
        Report(m_at + kFormatVersionAt,
               "The format version is " + Number(formatVersion) + ", above " + Number(kFormatVersion));
    }
    if (formatVersion < kFormatVersion) return;  // neither conditions nor sort keys
    CheckConditions();
    // The program reads wide keys by the lock word alone, and writes narrow ones: the size says what is there.
    CheckSortKeys(size == kWideSize ? kWideSortKeySize : kWrittenSortKeySize);
}

void AppInfoCheck::CheckGap(std::uint64_t at) {
    const auto stray = m_image.substr(at, kGapSize).find_first_not_of('\0');
    if (stray != std::string_view::npos) Report(at + stray, "The gap behind the record list is not zero");
}

void AppInfoCheck::CheckConditions() {
    bool unused = false;
    for (std::size_t k = 0; k < kMaxConditions; ++k) {
        const std::uint64_t at = m_at + kConditionsAt + k * kConditionSize;
        const std::string name = "Filter condition " + Number(k + 1);
        const auto selector = static_cast<std::uint8_t>(*At(at + kSelectorAt));
        const auto codes = static_cast<std::uint8_t>(*At(at + kCodesAt));
        if (selector == 0) {
            unused = true;
            const auto stray = m_image.substr(at, kConditionSize).find_first_not_of('\0');
            if (stray != std::string_view::npos) Report(at + stray, name + " is unused, but not all zero");
            continue;
        }
        if (unused) Report(at + kSelectorAt, name + " stands behind an unused one");
        CheckPaddedText(m_image, at, kConditionTextSize, "The text of filter condition " + Number(k + 1), m_departures);
        const std::uint8_t joined = codes >> 4;
        if (joined != 0 && (k > 0 || joined != 8)) {
            Report(at + kCodesAt, name + " has the unknown connective " + Number(joined));
        }
        if (selector != kAllFieldsSelector && !m_knowsFields) continue;
        if (selector != kAllFieldsSelector && selector - kFirstFieldSelector >= static_cast<int>(m_fields.size())) {
            Report(at + kSelectorAt, name + " names no field");
            continue;
        }
        // One that another type has is left when a field gets a type without it.
        const std::size_t known =
            selector == kAllFieldsSelector ? AllFieldsOperators().size() : InfoOf(FieldType::Number).operators.size();
        if ((codes & 0x0F) >= known) {
            Report(at + kCodesAt, name + " has the unknown operator " + Number(codes & 0x0F));
        }
    }
}

void AppInfoCheck::CheckSortKeys(std::size_t size) {
    bool unused = false;
    for (std::size_t k = 0; k < kMaxSortKeys; ++k) {
        const std::uint64_t at = m_at + kAppInfoFixedSize + k * size;
        const std::string name = "Sort key " + Number(k + 1);
        const auto field = static_cast<std::uint8_t>(*At(at));
        if (field == kUnusedSortKey) {
            unused = true;
            continue;
        }
        if (unused) Report(at, name + " stands behind an unused one");
        if (m_knowsFields && field >= m_fields.size()) Report(at, name + " names no field");
        if (static_cast<std::uint8_t>(*At(at + 1)) > 1) Report(at + 1, name + " has an unknown direction");
    }
}

}  // namespace quillary
