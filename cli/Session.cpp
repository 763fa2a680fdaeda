#include "cli/Session.h"

#include <cstdlib>

#include "cli/Input.h"
#include "cli/Progress.h"
#include "cli/Text.h"
#include "db/Utf.h"
#include "platform/posix/CodePages.h"
#include "platform/posix/PosixLocale.h"
#include "query/Sort.h"

namespace quillary {

void Complain(std::string_view text) {
    std::string ignored;  // there is nobody left to tell
    (void)WriteAll(StandardStream::Error, "qly: " + OneLine(text) + "\n", ignored);
}

bool Session::SetUp() {
    if (const auto order = m_arguments.Value("--date-order")) {
        m_givenOrder = *order == "mdy"   ? DateOrder::MonthDayYear
                       : *order == "dmy" ? DateOrder::DayMonthYear
                                         : DateOrder::YearMonthDay;
    }
    if (const auto name = m_arguments.Value("--code-page")) {
        m_page = CodePageByName(*name);
        if (!m_page) {
            Complain(Quoted(*name) + " is no code page that this system knows and a database can use.");
            return false;
        }
    }
    return true;
}

DateOrder Session::UserDateOrder() const { return m_givenOrder ? *m_givenOrder : PosixLocale().Order(); }

ExitStatus Session::Refuse(std::string_view text) const {
    Complain(text);
    return m_command.failure;
}

ExitStatus Session::Refuse(const Failure& failure) const {
    const bool lacksReason =
        failure.message == Message::ErrorOpeningFile || failure.message == Message::UnableToOpenForWriting;
    const bool hasReason = lacksReason && !m_files.Reason().empty();
    return Refuse(failure.text + (hasReason ? " (" + m_files.Reason() + ")" : ""));
}

ExitStatus Session::WrongUsage(std::string_view text) const {
    Complain(text);
    return ExitStatus::WrongUsage;
}

std::optional<std::u16string> Session::Wide(std::string_view argument) const {
    auto wide = Utf8ToWide(argument);
    if (!wide) Complain(Quoted(argument) + " is no UTF-8 text.");
    return wide;
}

std::optional<std::string> Session::Stored(std::string_view argument, std::string_view place) const {
    const auto wide = Wide(argument);
    if (!wide) return std::nullopt;
    std::u16string unstorable;
    auto stored = Page().FromWide(*wide, &unstorable);
    if (!stored) Complain(FormatMessage(Message::UnstorableCharacters, {place, WideToUtf8(unstorable)}));
    return stored;
}

std::optional<std::u16string> Session::ReadSecret(const std::string& path) const {
    std::string line;
    std::string reason;
    const std::string place = path == "-" ? "standard input" : path;
    if (!ReadFirstLine(path, line, reason)) {
        Complain("The password cannot be read from " + place + " (" + reason + ").");
        return std::nullopt;
    }
    auto wide = Utf8ToWide(line);
    if (!wide) Complain("The password in " + place + " is no UTF-8 text.");
    return wide;
}

void Session::ReadPassword() {
    if (m_password) return;
    m_password.emplace();
    if (const auto path = m_arguments.Value("--password-file")) {
        std::string reason;
        if (!ReadFirstLine(*path, m_password->text, reason)) {
            m_password->refusal = "The password file " + *path + " cannot be read (" + reason + ").";
        }
    } else if (const char* given = std::getenv("QLY_PASSWORD")) {
        m_password->text = FirstLine(given);
    }
}

bool Session::AskDatabasePassword(const CQuillaryDoc& doc) {
    ReadPassword();
    if (!m_password->refusal.empty()) {
        Complain(m_password->refusal);
        return false;
    }
    const auto wide = Utf8ToWide(m_password->text);
    if (wide && doc.CheckDatabasePassword(*wide)) return true;
    Complain(MessageText(Message::WrongDatabasePassword));
    return false;
}

bool Session::Open(CQuillaryDoc& doc, const std::string& path, OpenMode mode) {
    m_told = {};
    // A pipe may let it wait, which must not keep other programs waiting for the file.
    if (mode == OpenMode::EditExclusive) ReadPassword();
    if (!doc.OpenDatabase(path, mode, *this)) {
        if (m_told.message == Message::None) return false;  // the password, and that was said
        Failure failure = doc.ReaderError();
        if (failure.message == Message::None) failure = m_told;
        if (failure.message != m_told.message) failure.text = m_told.text + " " + failure.text;
        (void)Refuse(failure);
        TellOfRefusedFilesCopy(path, doc.Recovery());
        return false;
    }
    // A command that writes is refused when it saves, which says more.
    if (mode == OpenMode::Read) TellOfUnusedCopy(path, doc.Recovery());
    return true;
}

void Session::TellOfRefusedFilesCopy(const std::string& path, RecoveryState recovery) const {
    if (recovery != RecoveryState::Unrelated) return;
    Complain("A save of " + path +
             " that did not end has left a copy; opening this path in Quillary's window offers it.");
}

void Session::TellOfUnusedCopy(const std::string& path, RecoveryState recovery) {
    if (recovery == RecoveryState::Unrelated) {
        Complain("There is a recovery copy of " + path +
                 " from a save that did not end, but the file has changed since. The file is used as it is; opening it "
                 "in Quillary's window offers the copy.");
    } else if (recovery == RecoveryState::OtherVersions) {
        Complain(FormatMessage(Message::OtherVersionsCopy, {m_files.RecoveryPath(path).string()}) +
                 " The file is used as it is.");
    }
}

ExitStatus Session::OutputFailed() const { return Refuse("The output cannot be written (" + m_output.Reason() + ")."); }

bool Session::FlushBeforeSaving() {
    m_output.Flush();
    return !m_output.HasFailed();  // Finish says why
}

void Session::Sort(CQuillaryDoc& doc) const {
    Progress progress("Sorting", doc.Shown().size(), ShowsProgress());
    SortRecords(doc, [&progress](std::size_t rows) { progress.Show(rows); });
}

ExitStatus Session::SaveAs(CQuillaryDoc& doc, const std::string& path, std::string_view name) {
    Failure failure;
    return doc.SaveDatabaseAs(path, name, failure) ? ExitStatus::Done : Refuse(failure);
}

ExitStatus Session::Save(CQuillaryDoc& doc) {
    if (doc.IsModified() && !doc.LossBySaving().empty() && !m_arguments.Has("--drop-foreign")) {
        return Refuse(doc.LossBySaving() + " Nothing was changed; --drop-foreign gives them up.");
    }
    if (!FlushBeforeSaving()) return m_command.failure;
    Failure failure;
    return doc.SaveDatabase(failure) ? ExitStatus::Done : Refuse(failure);
}

std::string FieldList(const CQuillaryDoc& doc) {
    std::string list;
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        if (k > 0) list += k + 1 == doc.FieldCount() ? " and " : ", ";
        list += Quoted(WideToUtf8(doc.FieldName(k)));
    }
    return list;
}

std::optional<std::size_t> Session::FieldNamed(const CQuillaryDoc& doc, std::string_view name) const {
    const auto wide = Utf8ToWide(name);
    const auto stored = wide ? doc.Page().FromWide(*wide) : std::nullopt;
    auto field = stored ? doc.FieldByName(*stored) : std::nullopt;
    if (!field) {
        Complain("There is no field " + Quoted(name) + ". The database has " + FieldList(doc) + ".");
    }
    return field;
}

ExitStatus Session::Finish(ExitStatus status) {
    m_output.Flush();
    return m_output.HasFailed() ? OutputFailed() : status;
}

}  // namespace quillary
