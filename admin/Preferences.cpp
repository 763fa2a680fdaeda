#include "admin/Preferences.h"

#include "admin/DatabasePath.h"
#include "admin/SavePath.h"

namespace quillary {

Preferences Preferences::Load(const Settings& settings) {
    Preferences read;
    read.location = settings.ReadInt(kLocationNdx, read.location);
    read.maxRemoteResults = MaxRemoteResults(settings);
    read.confirmRecordDelete = settings.ReadInt(kConfirmRecordDelete, kConfirmRecordDeleteDefault) != 0;
    read.rowColor = settings.ReadInt(kAlternatingRowColor, read.rowColor);
    return read;
}

bool Preferences::Store(Settings& settings, Failure& failure) const {
    const Settings::Number numbers[] = {
        {kAlternatingRowColor, rowColor},
        {kConfirmRecordDelete, confirmRecordDelete ? 1 : 0},
        {kMaxRemoteResults, maxRemoteResults},
        {kLocationNdx, location},
    };
    std::string reason;
    if (settings.WriteInts(numbers, reason)) return true;
    failure.Set(Message::PreferencesNotStored, {reason});
    return false;
}

std::optional<std::int32_t> ReadMaxRemoteResults(std::u16string_view typed, Failure& failure) {
    typed = WithoutBlanksAround(typed);
    std::int32_t number = 0;
    bool isNumber = !typed.empty();
    for (const char16_t c : typed) {
        isNumber = isNumber && c >= u'0' && c <= u'9' && number <= kMostRemoteResults;
        if (isNumber) number = 10 * number + (c - u'0');
    }
    if (isNumber && number >= kFewestRemoteResults && number <= kMostRemoteResults) return number;
    failure.Set(Message::ResultsOutOfRange);
    return std::nullopt;
}

std::vector<std::string> LocationTexts(const StorageLocations& locations) {
    std::vector<std::string> texts = {std::string(kMainMemory)};
    const std::size_t cards = locations.CardFolders().size();
    for (std::size_t k = 1; k <= cards; ++k) texts.push_back("Storage card " + std::to_string(k) + "(if available)");
    return texts;
}

std::size_t LocationEntry(std::int32_t location, std::size_t count) {
    const bool isThere = location > 0 && static_cast<std::size_t>(location) < count;
    return isThere ? static_cast<std::size_t>(location) : 0;
}

}  // namespace quillary
