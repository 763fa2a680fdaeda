// The program's preferences as the preferences dialog sets them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "admin/Settings.h"
#include "admin/StorageLocations.h"
#include "db/Messages.h"

namespace quillary {

struct Preferences {
    std::int32_t location = 0;  // where new databases are saved: 0 = main folder, k = the k-th storage card
    std::int32_t maxRemoteResults = kMaxRemoteResultsDefault;
    bool confirmRecordDelete = kConfirmRecordDeleteDefault != 0;
    std::int32_t rowColor = kNoRowColor;  // 0x00BBGGRR

    [[nodiscard]] static Preferences Load(const Settings& settings);
    /// All of them or none.
    [[nodiscard]] bool Store(Settings& settings, Failure& failure) const;
};

/// The number that a person typed; refuses one out of range, and what is no whole number.
[[nodiscard]] std::optional<std::int32_t> ReadMaxRemoteResults(std::u16string_view typed, Failure& failure);

/// What to choose a location from: the main folder, then each storage card that is present. UTF-8.
[[nodiscard]] std::vector<std::string> LocationTexts(const StorageLocations& locations);

/// The entry to select among `count`: a location that is not there is the main folder.
[[nodiscard]] std::size_t LocationEntry(std::int32_t location, std::size_t count);

}  // namespace quillary
