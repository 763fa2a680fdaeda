// Finds in what a single record departs from the format: its frame, its entries, and what those of the schema say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Departures.h"
#include "db/AnsiText.h"
#include "db/FieldType.h"
#include "db/Layout.h"
#include "db/RecordBuffer.h"

namespace quillary {

inline std::uint8_t CategoryOf(std::uint8_t attributes) { return attributes & ~kDirtyBit; }
/// True for a record of another program or kind, which is not kept.
inline bool IsForeign(std::uint8_t attributes) {
    return CategoryOf(attributes) == 0 || CategoryOf(attributes) > kCategoryFieldLengths;
}
inline bool IsRow(std::uint8_t attributes) {
    return CategoryOf(attributes) == kCategoryShown || CategoryOf(attributes) == kCategoryHidden;
}
/// "FieldLabels", "data", "hidden data" and so on; not for a foreign record.
[[nodiscard]] std::string_view CategoryName(std::uint8_t attributes);

class RecordCheck {
  public:
    /// Everything must outlive the check; `knowsFields` is false, and `fields` empty, when the file does not tell them.
    RecordCheck(std::string_view image, const AnsiText& page, bool knowsFields, const std::vector<Field>& fields,
                Departures& departures)
        : m_image(image), m_page(page), m_knowsFields(knowsFields), m_fields(fields), m_departures(departures) {}

    /// `bytes` are a part of the image. `counts` is false for a schema record that a later one replaces, whose entries
    /// mean nothing.
    void Check(std::string_view bytes, std::uint8_t attributes, bool counts);

  private:
    void CheckFrame(std::string_view bytes, std::uint8_t attributes);
    void CheckEntryNumbers(const std::vector<Entry>& entries, std::uint8_t attributes, std::size_t count);
    [[nodiscard]] std::size_t EntriesRead(std::uint8_t attributes) const;
    void CheckHiddenEntries(const std::vector<Entry>& entries, std::uint8_t attributes);
    void CheckSchemaEntries(const std::vector<Entry>& entries, std::uint8_t attributes, std::uint64_t at);
    void CheckType(const Entry& entry);
    void CheckWidth(const Entry& entry);
    void CheckPreference(const Entry& entry);

    void Report(std::uint64_t offset, std::string problem) { m_departures.Report(offset, std::move(problem)); }
    /// Whether an entry of the schema is one of those behind the last field.
    [[nodiscard]] bool IsFiller(const Entry& entry) const { return m_knowsFields && entry.number >= m_fields.size(); }
    [[nodiscard]] std::string Quoted(std::string_view text) const;
    [[nodiscard]] std::uint64_t OffsetOf(std::string_view text) const {
        return static_cast<std::uint64_t>(text.data() - m_image.data());
    }

    std::string_view m_image;
    const AnsiText& m_page;
    const bool m_knowsFields;
    const std::vector<Field>& m_fields;
    Departures& m_departures;
};

}  // namespace quillary
