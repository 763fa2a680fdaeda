#include "cli/Commands.h"
#include "cli/DatabaseName.h"
#include "cli/FieldDefinition.h"
#include "cli/Session.h"

namespace quillary {

ExitStatus RunNew(Session& session, const Arguments& arguments) {
    const auto givenName = arguments.Value("--name");
    const auto definitions = arguments.Values("--field");
    if (!givenName || definitions.empty()) {
        return session.WrongUsage("A new database needs a --name and at least one --field.");
    }
    DefinitionError error;
    auto fields = ParseFieldDefinitions(definitions, session.Page(), error);
    if (!fields) {
        (void)session.Refuse(error.text);
        return error.status;
    }
    const auto name = StoredDatabaseName(session, *givenName);
    if (!name) return ExitStatus::Refused;

    CQuillaryDoc doc(session.Files(), session.Page());
    doc.NewDatabase(*name, std::move(*fields));
    return session.SaveAs(doc, arguments.words[0], *name);
}

}  // namespace quillary
