// The texts that operations answer with, so that the window and qly say the same.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace quillary {

enum class Message {
    None,
    // The reader's
    NoFilename,
    ErrorOpeningFile,
    InvalidDatabaseFile,
    NoFieldLabels,
    NoDataType,
    NoFieldLength,
    InvalidColumn,
    NoRecordsExist,
    EofReached,
    NoRecordsInFile,
    ColumnDoesNotExist,
    NoFieldNames,
    FileTooLarge,
    RecoveryNotRead,  // %s: path, %s: the system's reason
    OutOfMemory,
    // The writer's
    NameExists,
    UnableToOpenForWriting,
    ImageTooLarge,
    TooManyRecords,      // %s: what was refused
    ChangedByAnother,    // another program wrote the file since it was read
    FileBusy,            // another program holds the file's lock
    RecoveryNotWritten,  // %s: path, %s: the system's reason, %s: what became of the database
    UndecidedCopy,       // %s: path of the copy
    CopyOfMissing,       // %s: path of the copy
    OtherVersionsCopy,   // %s: path of the copy
    WriteFailed,         // %s: the system's reason, %s: what became of the file
    WriteFailedTorn,     // %s: the system's reason; the recovery file completes it at the next opening
    ReadOnly,
    NotSaved,    // %s: the database's name
    FileGone,    // %s: its path
    NotDeleted,  // %s: the system's reason
    NotCopied,   // %s: the system's reason
    NotRenamed,  // %s: the system's reason
    RecoveryCopyKeepsName,
    ForeignRecords,  // %s: number
    Damaged,         // %s: number
    FolderNotMade,   // %s: its path, %s: the system's reason
    // Field definitions
    NoColumns,
    BlankFieldName,
    TooManyFields,
    ControlCharacter,  // %s: where
    SemicolonInItem,   // %s: the item
    WouldHideFields,   // %s: number of texts, %s: the first one's own message
    // Passwords
    WrongDatabasePassword,
    PasswordsDiffer,
    WrongLockPassword,
    // Texts
    UnstorableCharacters,  // %s: where they stand, %s: the characters
    HidesField,            // %s: the byte's name, %s: field, %s: hidden field, %s: field, %s: the byte's name
    OutOfOrder,            // %s: field
    TextsOverlap,
    NameMissing,
    NameTooLong,     // %s: the name
    ImpossibleName,  // %s: the name
    NotANumber,      // %s: text
    NotAWholeNumber,
    NotADate,
    NotATime,
    NotACheckBox,
    NotAListItem,
    // The filter
    ConditionTooLong,  // %s: its text, %s: its number of bytes
    // Dialing, links and sending
    NoDialing,
    PhoneModified,
    CallFailed,  // %s: its return code
    NoPhoneColumns,
    NotAWebAddress,
    ControlInLink,
    MailDoesMore,
    NoLinkProgram,       // %s: what it would open
    LinkProgramMissing,  // %s: what it would open
    LinkProgramFailed,   // %s: what it was to open, %s: its exit status
    NotSentByMail,       // %s: the file's path
    NotSentByBluetooth,  // %s: the exit status of the program that was to send
    NoBluetooth,
    NoBluetoothProgram,
    // The user's calendar and contacts
    NoPersonalStore,
    NoLogOn,
    NoContactFields,
    ExportWithoutDate,  // %s: number of records
    // The catalogue
    NotSearchable,  // %s: the characters
    // Preferences
    ResultsOutOfRange,
    PreferencesNotStored,  // %s: the system's reason
    Count
};

/// The text itself, UTF-8; "%s" stands where FormatMessage puts its arguments.
[[nodiscard]] std::string_view MessageText(Message message);

/// The text with each "%s" replaced by the next argument; arguments are UTF-8 and taken as they are.
[[nodiscard]] std::string FormatMessage(Message message, std::initializer_list<std::string_view> arguments = {});

/// Why an operation did not do what was asked: what callers branch on, and what the user reads (UTF-8).
struct Failure {
    Message message = Message::None;
    std::string text = {};
    std::string reason = {};  // the system's, where the text does not give it

    void Set(Message which, std::initializer_list<std::string_view> arguments = {}) {
        message = which;
        text = FormatMessage(which, arguments);
        reason.clear();
    }
    [[nodiscard]] std::string WithReason() const { return reason.empty() ? text : text + " (" + reason + ")"; }
};

}  // namespace quillary
