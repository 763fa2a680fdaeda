// Which records the stored conditions let through, and hiding the others.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/QuillaryDoc.h"
#include "query/FoldedSearch.h"
#include "query/RowsDone.h"

namespace quillary {

/// The stored conditions, made ready to be tested against many records. The document must outlive it; its fields and
/// settings must not change meanwhile.
class RecordFilter {
  public:
    /// Conditions that name no field are left out, as if they were not there.
    explicit RecordFilter(const CQuillaryDoc& doc);

    /// No condition is left: there is no filter.
    [[nodiscard]] bool IsEmpty() const { return m_conditions.empty(); }
    [[nodiscard]] std::size_t ConditionCount() const { return m_conditions.size(); }
    /// Whether a record, given by its entries, meets condition `k` of those that are left. An entry that is missing
    /// shows as an empty text. An operator that the field's type lacks never matches.
    [[nodiscard]] bool MatchCondition(std::string_view entries, std::size_t k);
    /// All conditions together.
    [[nodiscard]] bool Passes(std::string_view entries);

  private:
    // What numbers, check boxes, dates and times are compared by.
    struct Value {
        double number = 0;
        bool isNull = false;
    };
    struct Condition {
        std::optional<std::size_t> field;  // none: All Fields
        std::uint8_t operation = 0;
        bool isKnown = true;                 // the operator
        bool isContained = false;            // of a text: it may stand anywhere in the display text
        Value value;                         // of a type that is compared by numbers
        std::string folded;                  // of a text, in a single-byte page
        std::optional<FoldedSearch> search;  // of a text that is not empty, in a single-byte page
        std::u16string upper;                // of a text, in any other page
    };

    [[nodiscard]] Condition Prepared(const FilterCondition& stored, std::optional<std::size_t> field) const;
    [[nodiscard]] bool AnyFieldMatches(std::string_view entries, const Condition& condition);
    [[nodiscard]] bool TextMatches(std::string_view display, const Condition& condition) const;
    /// The display text; it may point into m_display.
    [[nodiscard]] std::string_view Displayed(std::size_t field, std::optional<std::string_view> stored);

    const CQuillaryDoc& m_doc;
    std::vector<Condition> m_conditions;
    bool m_matchAny;
    EntryTable m_entries;
    std::string m_display;
};

/// The operators of a condition on a field, or on All Fields; the index is the stored code.
[[nodiscard]] std::span<const std::string_view> FilterOperators(const CQuillaryDoc& doc,
                                                                std::optional<std::size_t> field);

/// The stored filter without the conditions that name no field.
[[nodiscard]] FilterSettings EffectiveFilter(const CQuillaryDoc& doc);

/// Whether the filter depends on what records hold in `field`.
[[nodiscard]] bool IsFilteredBy(const CQuillaryDoc& doc, std::size_t field);

// Condition values in their stored form

/// Typed text; refused when it has characters that cannot be stored, or is too long.
[[nodiscard]] std::optional<std::string> ConditionText(std::u16string_view typed, const AnsiText& page,
                                                       Failure& failure);
/// A date's days or a time's seconds.
[[nodiscard]] std::string ConditionCount(std::optional<std::int32_t> count);
[[nodiscard]] std::string ConditionCheck(bool checked);
[[nodiscard]] bool IsConditionChecked(std::string_view value);
/// The time of day that a condition's value means, in minutes; nullopt for an empty or negative one.
[[nodiscard]] std::optional<std::int32_t> ConditionMinute(std::string_view value);
/// False (ConditionTooLong) when the file has no room for it.
[[nodiscard]] bool CheckConditionLength(std::string_view value, const AnsiText& page, Failure& failure);

// What the commands do

/// Hides the records that do not pass: of all records or, in the apply mode "Filtered records", of the shown ones.
/// Does nothing without a condition.
void ApplyFilter(CQuillaryDoc& doc, const RowsDone& done = {});
/// Stores the settings and applies them.
void SetAndApplyFilter(CQuillaryDoc& doc, FilterSettings settings, const RowsDone& done = {});
/// Drops the conditions and shows every record.
void RemoveFilter(CQuillaryDoc& doc);

}  // namespace quillary
