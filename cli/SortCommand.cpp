#include "cli/Commands.h"
#include "cli/Session.h"
#include "db/Utf.h"

namespace quillary {

namespace {

bool IsFieldName(const CQuillaryDoc& doc, std::string_view name) {
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        if (WideToUtf8(doc.FieldName(k)) == name) return true;
    }
    return false;
}

// A key as it is given; nullopt with a message when there is no such field.
std::optional<SortKey> ReadKey(const Session& session, const CQuillaryDoc& doc, std::string_view given) {
    constexpr std::string_view kAscending = ":asc";
    constexpr std::string_view kDescending = ":desc";
    const bool isDescending = given.ends_with(kDescending);
    std::string_view name = given;
    if (isDescending || given.ends_with(kAscending)) {
        name.remove_suffix(isDescending ? kDescending.size() : kAscending.size());
    }
    // A field may be called so altogether.
    const bool isWhole = name.size() < given.size() && IsFieldName(doc, given);
    const auto field = session.FieldNamed(doc, isWhole ? given : name);
    if (!field) return std::nullopt;
    return SortKey{doc.Fields()[*field].name, isDescending && !isWhole};
}

}  // namespace

ExitStatus RunSort(Session& session, const Arguments& arguments) {
    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
    SortSettings keys;
    for (std::size_t i = 1; i < arguments.words.size(); ++i) {
        auto key = ReadKey(session, doc, arguments.words[i]);
        if (!key) return ExitStatus::Refused;
        keys.push_back(std::move(*key));
    }
    doc.SetSort(std::move(keys));
    session.Sort(doc);
    return session.Save(doc);
}

}  // namespace quillary
