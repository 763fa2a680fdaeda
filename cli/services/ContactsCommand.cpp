#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/services/Export.h"
#include "cli/services/ServiceCommands.h"
#include "db/Utf.h"
#include "integration/ExportContacts.h"
#include "integration/PocketOutlook.h"

namespace quillary {

namespace {

// In the order of ContactProperty.
std::vector<std::string> PropertyNames() {
    std::vector<std::string> names(kContactProperties);
    for (const ContactPropertyInfo& row : kContactPropertyTable) {
        std::string& name = names[static_cast<std::size_t>(row.property)];
        name = WideToUtf8(row.label);
        if (name.ends_with(':')) name.pop_back();
    }
    return names;
}

struct Mapping {
    std::size_t property;
    std::string field;
};

std::optional<std::vector<Mapping>> ReadMappings(const Session& session, const std::vector<std::string>& given) {
    const std::vector<std::string> names = PropertyNames();
    std::vector<Mapping> mappings;
    for (const std::string& text : given) {
        const auto equals = text.find('=');
        if (equals == std::string::npos) {
            (void)session.WrongUsage(Quoted(text) + " is no PROPERTY=FIELD.");
            return std::nullopt;
        }
        const std::string name = text.substr(0, equals);
        const auto found = std::find(names.begin(), names.end(), name);
        if (found == names.end()) {
            const std::string hint = NearestNameHint(name, {names.begin(), names.end()});
            (void)session.WrongUsage("A contact has no " + Quoted(name) + "." +
                                     (hint.empty() ? " \"qly help contacts\" lists what it has." : hint));
            return std::nullopt;
        }
        const auto property = static_cast<std::size_t>(found - names.begin());
        if (std::any_of(mappings.begin(), mappings.end(),
                        [property](const Mapping& earlier) { return earlier.property == property; })) {
            (void)session.WrongUsage(Quoted(name) + " is given twice.");
            return std::nullopt;
        }
        mappings.push_back({property, text.substr(equals + 1)});
    }
    return mappings;
}

}  // namespace

ExitStatus RunContacts(Session& session, const Arguments& arguments) {
    const auto mappings = ReadMappings(session, arguments.Values("--map"));
    if (!mappings) return ExitStatus::WrongUsage;
    if (mappings->empty()) return session.WrongUsage(MessageText(Message::NoContactFields));

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::Read)) return ExitStatus::Refused;
    ContactFields fields = NoContactFields();
    for (const Mapping& mapping : *mappings) {
        const auto field = session.FieldNamed(doc, mapping.field);
        if (!field) return ExitStatus::Refused;
        fields[mapping.property] = static_cast<int>(*field);
    }

    const DateHabits habits = UserDateHabits(session);
    return ExportRecords(session, doc, {"contact", "the desktop's address book"},
                         [&](CPocketOutlook& outlook, std::size_t row) {
                             return outlook.CreateContact(MakeContact(doc, row, fields, habits));
                         });
}

}  // namespace quillary
