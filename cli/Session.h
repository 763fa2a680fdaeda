// One run of a command: its streams, its code page, the way it opens and saves databases, and how it says what went
// wrong.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/Command.h"
#include "cli/Output.h"
#include "cli/SessionFiles.h"
#include "db/AnsiText.h"
#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

namespace quillary {

/// Prints one line on standard error.
void Complain(std::string_view text);

class Session : private Questions {
  public:
    Session(const Command& command, const Arguments& arguments)
        : m_command(command), m_arguments(arguments), m_files(ShowsProgress()) {}
    /// False, with a message, when an option that every command takes has an unknown value.
    [[nodiscard]] bool SetUp();

    [[nodiscard]] Output& Out() { return m_output; }
    [[nodiscard]] FileAccess& Files() { return m_files; }
    [[nodiscard]] const AnsiText& Page() const { return m_page ? *m_page : AnsiText::Windows1252(); }
    /// By the stored keys.
    void Sort(CQuillaryDoc& doc) const;
    [[nodiscard]] bool ShowsProgress() const { return !m_arguments.Has("--quiet"); }
    [[nodiscard]] std::optional<DateOrder> GivenDateOrder() const { return m_givenOrder; }
    /// The one that was given, else the user's.
    [[nodiscard]] DateOrder UserDateOrder() const;

    /// Says why the command does not do what was asked; the status that it answers.
    ExitStatus Refuse(std::string_view text) const;
    /// With the system's reason behind the message that a file cannot be opened or made.
    ExitStatus Refuse(const Failure& failure) const;
    ExitStatus WrongUsage(std::string_view text) const;

    /// An argument as UTF-16; nullopt with a message when it is no UTF-8.
    [[nodiscard]] std::optional<std::u16string> Wide(std::string_view argument) const;
    /// An argument as it is stored; `place` says in the message what cannot hold its characters.
    [[nodiscard]] std::optional<std::string> Stored(std::string_view argument, std::string_view place) const;

    /// A password, the first line of the file at `path`; nullopt with a message when it cannot be read or is no UTF-8.
    [[nodiscard]] std::optional<std::u16string> ReadSecret(const std::string& path) const;

    /// False with a message when `path` is not opened. Tells a command that reads of an unused recovery copy.
    [[nodiscard]] bool Open(CQuillaryDoc& doc, const std::string& path, OpenMode mode);
    /// Says that the file at `path` is read without the recovery copy that was found, when that is so.
    void TellOfUnusedCopy(const std::string& path, RecoveryState recovery);
    /// Says that a copy lies there for a file that is no database, or gone.
    void TellOfRefusedFilesCopy(const std::string& path, RecoveryState recovery) const;
    /// Makes the database of `doc` a new file.
    [[nodiscard]] ExitStatus SaveAs(CQuillaryDoc& doc, const std::string& path, std::string_view name);
    /// Writes the collected output, so that a command whose output fails changes nothing. False when it fails.
    [[nodiscard]] bool FlushBeforeSaving();
    /// FlushBeforeSaving, then writes `doc`.
    [[nodiscard]] ExitStatus Save(CQuillaryDoc& doc);
    /// The field of that name; nullopt with a message that lists the fields.
    [[nodiscard]] std::optional<std::size_t> FieldNamed(const CQuillaryDoc& doc, std::string_view name) const;

    /// Writes the rest of the output; the status with which the process ends.
    [[nodiscard]] ExitStatus Finish(ExitStatus status);

  private:
    struct GivenPassword {
        std::string text;
        std::string refusal;  // why it could not be read
    };

    void Tell(const Failure& failure) override { m_told = failure; }
    [[nodiscard]] bool AskDatabasePassword(const CQuillaryDoc& doc) override;
    void ReadPassword();
    [[nodiscard]] ExitStatus OutputFailed() const;

    const Command& m_command;
    const Arguments& m_arguments;
    SessionFiles m_files;
    std::optional<AnsiText> m_page;
    std::optional<DateOrder> m_givenOrder;
    Output m_output;
    Failure m_told;
    std::optional<GivenPassword> m_password;  // once its source was read
};

/// "A", "B" and "C": what a message lists.
[[nodiscard]] std::string FieldList(const CQuillaryDoc& doc);

}  // namespace quillary
