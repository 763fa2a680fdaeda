#include "db/Messages.h"

#include <iterator>

namespace quillary {

namespace {

struct Row {
    Message message;
    std::string_view text;
};

constexpr Row kMessages[] = {
    {Message::None, ""},
    {Message::NoFilename, "No filename specified."},
    {Message::ErrorOpeningFile, "Error opening requested file."},
    {Message::InvalidDatabaseFile, "Invalid database file."},
    {Message::NoFieldLabels, "No Field Labels Record."},
    {Message::NoDataType, "No Data Type Record."},
    {Message::NoFieldLength, "No Field Length Record."},
    {Message::InvalidColumn, "Invalid Column Number specified."},
    {Message::NoRecordsExist, "No records exist."},
    {Message::EofReached, "EOF Reached"},
    {Message::NoRecordsInFile, "No Records in File."},
    {Message::ColumnDoesNotExist, "Column does not exist."},
    {Message::NoFieldNames, "The names of its fields cannot be read."},
    {Message::FileTooLarge, "The file is larger than 1 GiB and is not opened."},
    {Message::RecoveryNotRead,
     "A stopped save left the recovery copy %s, which cannot be read (%s). The database is not used without it."},
    {Message::OutOfMemory, "There is not enough memory for this database. Nothing was changed."},
    {Message::NameExists, "A database with this name already exists at this location."},
    {Message::UnableToOpenForWriting, "Unable to open file for writing. Check the file permissions."},
    {Message::ImageTooLarge,
     "The database would be larger than 1 GiB, and such a file is not opened. Nothing was written."},
    {Message::TooManyRecords, "A database holds at most 65,531 records. %s"},
    {Message::ChangedByAnother, "Another program has changed this database since it was read. It was not overwritten."},
    {Message::FileBusy, "Another program is using this database. Try again when it is done."},
    {Message::RecoveryNotWritten, "The recovery copy %s could not be written (%s). %s"},
    {Message::UndecidedCopy,
     "A stopped save left the copy %s, and the database has been changed since. Open it in Quillary's window to decide "
     "between them, or move the copy away."},
    {Message::CopyOfMissing,
     "A stopped save left the copy %s of a database that was here. Open this path in Quillary's window to restore it, "
     "or move the copy away."},
    {Message::OtherVersionsCopy,
     "Another version of Quillary left the recovery copy %s, which this one cannot read. Open the database in that "
     "version, or move the copy away."},
    {Message::WriteFailed, "The database could not be written (%s). %s"},
    {Message::WriteFailedTorn,
     "The database could not be written (%s). Opening it again completes it from its recovery copy."},
    {Message::ReadOnly, "This database is read only: its file or folder cannot be written."},
    {Message::NotSaved, "The changes to \"%s\" are not saved."},
    {Message::FileGone, "The file %s is no longer there."},
    {Message::NotDeleted, "The database could not be deleted (%s)."},
    {Message::NotCopied, "The database could not be copied (%s)."},
    {Message::NotRenamed, "The database could not be renamed (%s)."},
    {Message::RecoveryCopyKeepsName,
     "A stopped save of this database left a recovery copy, which is found by its present name. Open the database "
     "first, then rename it."},
    {Message::ForeignRecords,
     "Of the records in this file, %s would not come back when it is written, being of other programs or kinds."},
    {Message::Damaged,
     "Damaged records or settings in this file: %s. What of them cannot be read now is lost when it is written."},
    {Message::FolderNotMade, "The folder %s could not be made (%s)."},
    {Message::NoColumns, "Please define at least one column."},
    {Message::BlankFieldName, "The blank field must have a name."},
    {Message::TooManyFields, "A database has at most 20 fields."},
    {Message::ControlCharacter, "A line break, tab or other control character cannot stand in %s."},
    {Message::SemicolonInItem, "An item of a list cannot hold \";\", which separates the items in the file: \"%s\""},
    {Message::WouldHideFields, "The fields were not changed. Texts that would hide a later field: %s. The first: %s"},
    {Message::WrongDatabasePassword, "The password you have entered does not match the database password."},
    {Message::PasswordsDiffer, "The new passwords are different."},
    {Message::WrongLockPassword, "You have entered an incorrect password."},
    {Message::UnstorableCharacters, "These characters cannot be stored in %s: %s"},
    {Message::HidesField, "A %s in \"%s\" would hide the field \"%s\". Move \"%s\" behind it or take the %s out."},
    {Message::OutOfOrder,
     "The entries of this record stand in an order in which a new text of \"%s\" would not be found again. The record "
     "was not changed."},
    {Message::TextsOverlap,
     "The texts of this record lie in each other, and apart they would be too large. The record was not changed."},
    {Message::NameMissing, "You must provide a database name before continuing."},
    {Message::NameTooLong, "The database's name \"%s\" is longer than 28 characters."},
    {Message::ImpossibleName, "\"%s\" cannot be the name of a database file."},
    {Message::NotANumber, "\"%s\" is no number."},
    {Message::NotAWholeNumber, "\"%s\" is no whole number."},
    {Message::NotADate, "\"%s\" is no date."},
    {Message::NotATime, "\"%s\" is no time."},
    {Message::NotACheckBox, "\"%s\" is neither true nor false."},
    {Message::NotAListItem, "\"%s\" is no item of the list."},
    {Message::ConditionTooLong, "A filter condition holds at most 39 bytes of text; \"%s\" has %s."},
    {Message::NoDialing, "Device does not support automated dialing."},
    {Message::PhoneModified, "Phone DLL has been modified on this device."},
    {Message::CallFailed, "Call Failed! Return Code: %s"},
    {Message::NoPhoneColumns, "No Phone columns in this record."},
    {Message::NotAWebAddress, "This is no web address. Only those of http and https are opened."},
    {Message::ControlInLink, "This address holds a line break or another control character and was not opened."},
    {Message::MailDoesMore,
     "This mail address was not opened. Behind its \"?\" it may set the subject, the text, keywords and who gets a "
     "copy, and no more."},
    {Message::NoLinkProgram, "This desktop has no program for %s."},
    {Message::LinkProgramMissing, "The program that this desktop has for %s is no longer installed."},
    {Message::LinkProgramFailed, "The desktop's program for %s could not open this one (exit status %s)."},
    {Message::NotSentByMail, "No mail program takes a file from here. Attach it to a mail yourself:\n%s"},
    {Message::NotSentByBluetooth, "The program that sends files by Bluetooth has failed (exit status %s)."},
    {Message::NoBluetooth, "This computer has no infrared, and no Bluetooth in its place."},
    {Message::NoBluetoothProgram, "No program that sends files by Bluetooth, in place of infrared, is installed."},
    {Message::NoPersonalStore, "CPocketOutlook constructor Failed!!"},
    {Message::NoLogOn, "Could not log on to Pocket Outlook!"},
    {Message::NoContactFields, "You must select at least one field to export to contacts."},
    {Message::ExportWithoutDate, "%s records have no date. Export them too?"},
    {Message::NotSearchable, "The code page lacks these characters, so they cannot be searched for: %s"},
    {Message::ResultsOutOfRange, "Enter an integer between 1 and 100."},
    {Message::PreferencesNotStored, "The preferences could not be stored (%s)."},
};
static_assert(std::size(kMessages) == static_cast<std::size_t>(Message::Count));

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kMessages); ++i) {
        if (static_cast<std::size_t>(kMessages[i].message) != i) return false;
    }
    return true;
}
static_assert(InOrder());

}  // namespace

std::string_view MessageText(Message message) { return kMessages[static_cast<std::size_t>(message)].text; }

std::string FormatMessage(Message message, std::initializer_list<std::string_view> arguments) {
    std::string_view text = MessageText(message);
    std::string out;
    for (const std::string_view argument : arguments) {
        const auto at = text.find("%s");
        if (at == text.npos) break;
        out.append(text, 0, at).append(argument);
        text.remove_prefix(at + 2);
    }
    return out.append(text);
}

}  // namespace quillary
