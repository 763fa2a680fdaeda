// The open database: fields, shown and hidden records, settings, and the operations that every view, dialog and command
// works through.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/AnsiText.h"
#include "db/DatabaseWriter.h"
#include "db/DocumentFile.h"
#include "db/FieldType.h"
#include "db/FileAccess.h"
#include "db/Messages.h"
#include "db/Questions.h"
#include "db/RecordArena.h"
#include "db/RecordBuffer.h"

namespace quillary {

class CQuillaryDoc {
  public:
    /// Texts cross the code page `page`; both references outlive the document.
    explicit CQuillaryDoc(FileAccess& files, const AnsiText& page = AnsiText::Windows1252());
    ~CQuillaryDoc();
    CQuillaryDoc(const CQuillaryDoc&) = delete;
    CQuillaryDoc& operator=(const CQuillaryDoc&) = delete;

    // ---- The file

    /// Replaces the document by the database at `path`. Tells "Invalid database file." through `questions` and asks
    /// there for the password of a locked one; false, with the document empty, when it is not opened.
    [[nodiscard]] bool OpenDatabase(const Path& path, OpenMode mode, Questions& questions);
    /// Why the reader refused, when it was the reader: a finer reason than "Invalid database file.".
    [[nodiscard]] const Failure& ReaderError() const { return m_readerError; }

    /// Makes an empty, unsaved document. `name` is stored in the header, cut to 31 bytes, never inside a character.
    void NewDatabase(std::string_view name, std::vector<Field> fields);

    /// Rewrites the file; writes nothing when nothing changed. On failure the document is as it was and stays
    /// modified; so is the file, unless the message says otherwise.
    [[nodiscard]] bool SaveDatabase(Failure& failure);
    /// As SaveDatabase, but also over a file that another program changed.
    [[nodiscard]] bool OverwriteDatabase(Failure& failure);
    /// Writes a new file at `path` under `name` and goes on with it. Refuses a path that is taken (NameExists).
    [[nodiscard]] bool SaveDatabaseAs(const Path& path, std::string_view name, Failure& failure);
    /// Waits for the last save's flush. A failure here leaves a recovery file.
    [[nodiscard]] bool FinishSave(Failure& failure);
    /// Whether the flush of a save runs on a thread of its own (window) or before SaveDatabase returns (commands).
    void FlushInBackground(bool on) { m_file.FlushInBackground(on); }
    /// Whether another program has written the file since it was read or saved, by the file's state alone.
    [[nodiscard]] bool HasFileChanged() const { return m_file.HasChanged(); }
    /// The file is no longer what was read: the records here are the only ones, and count as unsaved.
    void KeepUnsaved() { m_modified = true; }
    void Close();

    /// "A database with this name already exists at this location." when `path` can be read.
    [[nodiscard]] static bool DatabaseExists(FileAccess& files, const Path& path, Failure& failure);

    [[nodiscard]] bool IsOpen() const { return !m_content.fields.empty(); }
    [[nodiscard]] const Path& FilePath() const { return m_file.FilePath(); }
    [[nodiscard]] bool IsModified() const { return m_modified; }
    [[nodiscard]] bool IsReadOnly() const { return m_file.IsReadOnly(); }
    /// After a database that was not opened too, when that is for want of a valid file at its path.
    [[nodiscard]] RecoveryState Recovery() const { return m_file.Recovery(); }
    /// The whole file as last read or written.
    [[nodiscard]] std::string_view FileImage() const;
    /// What the file would hold no more after a save, in sentences for a person (UTF-8); empty when it loses nothing.
    [[nodiscard]] const std::string& LossBySaving() const { return m_lossBySaving; }
    /// Grows with every change; a dialog that kept an index compares it.
    [[nodiscard]] std::uint64_t ChangeNumber() const { return m_changeNumber; }

    // ---- Name and fields

    [[nodiscard]] const AnsiText& Page() const { return m_page; }
    [[nodiscard]] std::u16string Name() const;
    [[nodiscard]] std::uint16_t FormatVersion() const { return m_formatVersion; }  // of the file that was read
    [[nodiscard]] std::size_t FieldCount() const { return m_content.fields.size(); }
    [[nodiscard]] const std::vector<Field>& Fields() const { return m_content.fields; }
    [[nodiscard]] std::u16string FieldName(std::size_t k) const;
    [[nodiscard]] FieldType TypeOf(std::size_t k) const { return m_content.fields[k].type; }
    /// 80 for a column that does not exist.
    [[nodiscard]] std::int32_t FieldWidth(std::size_t k) const;
    void SetFieldWidth(std::size_t k, std::int32_t pixels);
    /// The first field of exactly this name (code page bytes).
    [[nodiscard]] std::optional<std::size_t> FieldByName(std::string_view name) const;
    /// The type number of the first field of exactly this name, or kNoFieldType.
    [[nodiscard]] std::size_t GetFieldTypeByName(std::string_view name) const;
    /// Advances the Sequence fields by one increment each, as the commit of a new record does. Stops at the 32-bit
    /// limit.
    void AdvanceSequences();
    void SetSequenceNext(std::size_t k, std::int32_t next);
    /// The records are to fit: with another layout, ReplaceAllRecords follows.
    void SetFields(std::vector<Field> fields);

    // ---- Records. Rows count from 0 among the shown records.

    [[nodiscard]] const std::vector<RecordRef>& Shown() const { return m_content.shown; }
    [[nodiscard]] const std::vector<RecordRef>& Hidden() const { return m_content.hidden; }
    [[nodiscard]] std::size_t RecordCount() const { return m_content.shown.size() + m_content.hidden.size(); }

    [[nodiscard]] std::size_t CurrentRecord() const { return m_current; }
    void SetCurrentRecord(std::size_t row) { m_current = row; }
    /// False, with the current record unchanged, at the end of the shown list.
    bool NextRecord();
    bool PreviousRecord();

    /// The text of field k of the current record, or nullopt when it has no such entry.
    [[nodiscard]] std::optional<std::u16string> FieldText(std::size_t k, bool formatted) const;
    /// The display text in the code page, appended; nothing for a missing entry.
    void AppendDisplay(std::string_view stored, std::size_t field, std::string& out) const;

    /// Adds a record at the end of the shown list and makes it current. False (TooManyRecords) at the limit.
    [[nodiscard]] bool AppendRecord(std::string_view entries, Failure& failure);
    void ReplaceRecord(std::size_t row, std::string_view entries);
    void RemoveRecord(std::size_t row);
    /// As many as there are, each in the place of its old form; `arena` holds them.
    void ReplaceAllRecords(std::vector<RecordRef> shown, std::vector<RecordRef> hidden, RecordArena arena);
    /// Puts the hidden records, in their order, behind the shown ones.
    void ShowAllRecords();
    /// The same records, divided anew. Nothing is marked changed when they are what there is.
    void DivideRecords(std::vector<RecordRef> shown, std::vector<RecordRef> hidden);
    /// The record at the position in entry k of `order` moves to position k. `order` is a permutation of the shown
    /// rows; nothing is marked changed when it is the identity.
    void ReorderRecords(std::span<const std::uint32_t> order);
    /// Whether `more` records can be added.
    [[nodiscard]] bool HasRoomFor(std::size_t more) const { return RecordCount() + more <= kMaxRecords; }

    // ---- Settings

    [[nodiscard]] const FilterSettings& Filter() const { return m_content.filter; }
    void SetFilter(FilterSettings filter);
    [[nodiscard]] const SortSettings& Sort() const { return m_content.sort; }
    void SetSort(SortSettings sort);
    [[nodiscard]] DateStyle Style() const { return m_content.appInfo.Style(); }
    [[nodiscard]] bool EditOnSelect() const { return m_content.appInfo.EditOnSelect(); }
    void SetStyle(DateStyle style);
    void SetEditOnSelect(bool on);

    [[nodiscard]] std::u16string InfoText() const { return m_page.ToWide(m_content.infoText); }
    [[nodiscard]] const std::string& InfoTextBytes() const { return m_content.infoText; }
    [[nodiscard]] std::int32_t InfoLockHash() const { return m_content.infoLockHash; }
    void SetInfo(std::string text, std::int32_t lockHash);

    [[nodiscard]] std::uint32_t DatabasePasswordHash() const { return m_content.appInfo.LockWord(); }
    [[nodiscard]] bool CheckDatabasePassword(std::u16string_view typed) const;
    void SetDatabasePassword(std::u16string_view typed);

    // ---- All or nothing

    class State;
    /// The whole state of the document but its file, for taking a change back. Cheap: records are shared.
    [[nodiscard]] std::shared_ptr<const State> Snapshot() const;
    void Restore(const State& state);

  private:
    struct Storage;  // the image and the arena that the records live in

    [[nodiscard]] bool Load(const Path& path, OpenMode mode);
    [[nodiscard]] bool Save(bool overwriteChanges, Failure& failure);
    [[nodiscard]] bool SaveAs(const Path& path, std::string_view name, Failure& failure);
    /// Goes on with what is now in the file.
    void Adopt(DatabaseContent written);
    [[nodiscard]] RecordRef NewRecord(std::string_view entries);
    void Changed();
    void Clear();

    const AnsiText& m_page;
    CDocumentFile m_file;
    DatabaseContent m_content;
    std::shared_ptr<Storage> m_storage;
    std::size_t m_current = 0;
    std::uint16_t m_formatVersion = kFormatVersion;
    std::string m_lossBySaving;
    std::uint64_t m_changeNumber = 0;
    bool m_modified = false;
    Failure m_readerError;
};

}  // namespace quillary
