#include "admin/ApplySchema.h"
#include "cli/Commands.h"
#include "cli/Description.h"
#include "cli/Input.h"
#include "cli/SchemaJson.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "platform/posix/PosixClock.h"

namespace quillary {

namespace {

constexpr std::size_t kLargestSchema = 16 << 20;  // bytes: lists with many items

ExitStatus Print(Session& session, const std::string& path) {
    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, path, OpenMode::Read)) return ExitStatus::Refused;
    session.Out().HoldsJson();
    session.Out().Append(FieldsAsJson(doc) + "\n");
    return ExitStatus::Done;
}

}  // namespace

ExitStatus RunFields(Session& session, const Arguments& arguments) {
    const bool isLenient = arguments.Has("--lenient");
    if (arguments.words.size() < 2) {
        if (isLenient) return session.WrongUsage("--lenient is for a schema that is applied.");
        return Print(session, arguments.words[0]);
    }
    if (arguments.words[1] == "-" && arguments.Value("--password-file") == "-") {
        return session.WrongUsage("The schema and the password cannot both come from standard input.");
    }
    InputBytes schema;
    std::string error;
    {
        Progress progress("Reading", 0, session.ShowsProgress());
        if (!schema.Read(arguments.words[1], kLargestSchema, progress, error)) {
            return session.Refuse("The schema " + arguments.words[1] + " cannot be read (" + error + ").");
        }
    }
    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
    auto definitions = ReadSchema(schema.Text(), doc, error);
    if (!definitions) return session.Refuse(error);

    Failure failure;
    auto prepared = PrepareSchema(doc, std::move(*definitions), CenturyOf(PosixClock()), failure);
    if (!prepared) return session.Refuse(failure.text);
    if (prepared->emptied > 0 && !isLenient) {
        return session.Refuse(Counted(prepared->emptied, "value") +
                              " cannot be converted and would be left empty. With --lenient the fields are changed "
                              "all the same.");
    }
    const std::size_t unchecked = prepared->unchecked;
    if (!ApplySchema(doc, std::move(*prepared))) return ExitStatus::Done;
    session.Sort(doc);
    const ExitStatus status = session.Save(doc);
    if (status == ExitStatus::Done && unchecked > 0) {
        Complain(Counted(unchecked, "value") + " neither yes nor no became a no.");
    }
    return status;
}

}  // namespace quillary
