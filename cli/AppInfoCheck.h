// Finds in what the application-info block departs from the format: its place, its size, its conditions and sort keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Departures.h"
#include "db/FieldType.h"

namespace quillary {

/// Checks that the `size` bytes at `at`, which are there, are a text filled up with NUL, at least one.
void CheckPaddedText(std::string_view image, std::uint64_t at, std::size_t size, const std::string& what,
                     Departures& departures);

class AppInfoCheck {
  public:
    /// Everything must outlive the check; `knowsFields` is false, and `fields` empty, when the file does not tell them.
    AppInfoCheck(std::string_view image, bool knowsFields, const std::vector<Field>& fields, Departures& departures)
        : m_image(image), m_knowsFields(knowsFields), m_fields(fields), m_departures(departures) {}

    /// `at` is where the header says that the block begins, 0 for none; `listEnd` is the end of the record list and
    /// `records` where the first record begins, as its entry says.
    void Check(std::uint64_t at, std::uint64_t listEnd, std::uint64_t records);

  private:
    void CheckGap(std::uint64_t at);
    void CheckConditions();
    void CheckSortKeys(std::size_t size);

    void Report(std::uint64_t offset, std::string problem) { m_departures.Report(offset, std::move(problem)); }
    [[nodiscard]] const char* At(std::uint64_t offset) const { return m_image.data() + offset; }

    std::string_view m_image;
    const bool m_knowsFields;
    const std::vector<Field>& m_fields;
    Departures& m_departures;
    std::uint64_t m_at = 0;
};

}  // namespace quillary
