#include <filesystem>

#include "admin/DatabasePath.h"
#include "cli/Commands.h"
#include "cli/DatabaseName.h"
#include "cli/FieldDefinition.h"
#include "cli/Import.h"
#include "cli/Input.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "platform/posix/PosixClock.h"

namespace quillary {

namespace {

// By a file that can be read or not: opening it says what is wrong with it.
bool IsTaken(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::status(path, ignored).type() != std::filesystem::file_type::not_found;
}

class ImportRun {
  public:
    ImportRun(Session& session, const Arguments& arguments)
        : m_session(session),
          m_path(arguments.words[1]),
          m_arguments(arguments),
          m_rules{session.Page(),          session.GivenDateOrder(),   session.UserDateOrder(),
                  CenturyOf(PosixClock()), arguments.Has("--lenient"), arguments.Has("--fit")},
          m_doc(session.Files(), session.Page()) {}

    ExitStatus Run() {
        const bool append = IsTaken(m_path);
        for (const std::string_view option : {"--name", "--field", "--fit"}) {
            if (append && m_arguments.Has(option)) {
                return m_session.WrongUsage(std::string(option) + " is for a new database, but " + m_path +
                                            " is there.");
            }
        }
        if (m_arguments.words[0] == "-" && m_arguments.Value("--password-file") == "-") {
            return m_session.WrongUsage("The table and the password cannot both come from standard input.");
        }
        // The definitions first: nobody should have to send a long table only to learn of a slip in them.
        DefinitionError error;
        const auto definitions = ParseFieldDefinitions(m_arguments.Values("--field"), m_session.Page(), error);
        if (!definitions) {
            (void)m_session.Refuse(error.text);
            return error.status;
        }
        std::string reason;
        if (!ReadTable(reason)) {
            return m_session.Refuse("The table " + m_arguments.words[0] + " cannot be read (" + reason + ").");
        }
        return append ? Append() : Make(*definitions);
    }

  private:
    bool ReadTable(std::string& reason) {
        Progress progress("Reading", 0, m_session.ShowsProgress());
        return m_table.Read(m_arguments.words[0], kMaxReadSize, progress, reason);
    }

    ExitStatus Append() {
        if (!m_session.Open(m_doc, m_path, OpenMode::EditExclusive)) return ExitStatus::Refused;
        return ImportRows() ? m_session.Save(m_doc) : ExitStatus::Refused;
    }

    ExitStatus Make(const std::vector<Field>& definitions) {
        const auto name = StoredDatabaseName(m_session, m_arguments.Value("--name").value_or(DatabaseNameFor(m_path)));
        if (!name) return ExitStatus::Refused;
        std::string error;
        auto fields = FieldsFor(definitions, error);
        if (!fields) return m_session.Refuse(error);
        m_doc.NewDatabase(*name, std::move(*fields));
        if (!ImportRows() || !m_session.FlushBeforeSaving()) return ExitStatus::Refused;
        return m_session.SaveAs(m_doc, m_path, *name);
    }

    std::optional<std::vector<Field>> FieldsFor(const std::vector<Field>& definitions, std::string& error) {
        Progress progress("Finding types", m_table.Text().size(), m_session.ShowsProgress());
        return FieldsForTable(m_table.Text(), definitions, m_rules, progress, error);
    }

    // The table is done with afterwards; its memory is given back before the image of the database is built.
    bool ReadRows(ImportResult& result, std::string& error) {
        Progress progress("Importing", m_table.Text().size(), m_session.ShowsProgress());
        const bool imported = ImportTable(m_doc, m_table.Text(), m_rules, progress, result, error);
        m_table = {};
        return imported;
    }

    bool ImportRows() {
        ImportResult result;
        std::string error;
        if (!ReadRows(result, error)) {
            (void)m_session.Refuse(error);
            return false;
        }
        if (m_rules.lenient) {
            // Always in these words, for scripts.
            m_session.Out().Append(std::to_string(result.records) + " records, " + std::to_string(result.emptied) +
                                   " values stored empty\n");
        }
        return true;
    }

    Session& m_session;
    std::string m_path;
    const Arguments& m_arguments;
    ImportRules m_rules;
    CQuillaryDoc m_doc;
    InputBytes m_table;
};

}  // namespace

ExitStatus RunImport(Session& session, const Arguments& arguments) { return ImportRun(session, arguments).Run(); }

}  // namespace quillary
