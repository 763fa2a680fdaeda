// The program's preferences, shared by the window and qly: named values in the group "Preferences".
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillary {

class Settings {
  public:
    virtual ~Settings() = default;
    [[nodiscard]] virtual std::int32_t ReadInt(std::string_view name, std::int32_t fallback) const = 0;
    [[nodiscard]] virtual std::string ReadText(std::string_view name, std::string_view fallback) const = 0;
    struct Number {
        std::string_view name;
        std::int32_t value;
    };
    /// Keeps all of them or none. `reason` says why in the system's words when it is none.
    virtual bool WriteInts(std::span<const Number> numbers, std::string& reason) = 0;
    /// False when the value could not be kept.
    bool WriteInt(std::string_view name, std::int32_t value) {
        const Number number{name, value};
        std::string untold;
        return WriteInts({&number, 1}, untold);
    }
    virtual bool WriteText(std::string_view name, std::string_view value) = 0;
};

/// Where new databases are saved: 0 = main folder, k = the k-th storage card.
inline constexpr std::string_view kLocationNdx = "LocationNdx";
/// How many results one query of the catalogue asks for.
inline constexpr std::string_view kMaxRemoteResults = "MaxRemoteResults";
inline constexpr std::int32_t kMaxRemoteResultsDefault = 25;
inline constexpr std::int32_t kFewestRemoteResults = 1;
inline constexpr std::int32_t kMostRemoteResults = 100;
/// A number out of range, which only a person's editor can have put there, is the nearest of these.
inline std::int32_t MaxRemoteResults(const Settings& settings) {
    const std::int32_t number = settings.ReadInt(kMaxRemoteResults, kMaxRemoteResultsDefault);
    return std::clamp(number, kFewestRemoteResults, kMostRemoteResults);
}
/// Who is searched, and who is downloaded from: a host, or host:port.
inline constexpr std::string_view kCatalogueServer = "CatalogueServer";
inline constexpr std::string_view kDownloadServer = "DownloadServer";
inline constexpr std::string_view kServerDefault = "127.0.0.1:8711";

/// Of every second row of the record list, 0x00BBGGRR; white (the default) colours none.
inline constexpr std::string_view kAlternatingRowColor = "AlternatingRowColor";
inline constexpr std::int32_t kNoRowColor = 0xFFFFFF;

/// Whether deleting a record is asked about; 0 for no.
inline constexpr std::string_view kConfirmRecordDelete = "ConfirmRecDelete";
inline constexpr std::int32_t kConfirmRecordDeleteDefault = 1;

/// Where exported appointments and contacts go: "files", else the desktop's calendar and address book where there are
/// any.
inline constexpr std::string_view kPersonalStore = "PersonalStore";
inline constexpr std::string_view kPersonalStoreFiles = "files";

}  // namespace quillary
