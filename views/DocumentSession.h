// The open database as the window works with it: saves it, tells what failed, and is the document's place in command
// routing.
#pragma once

#include <functional>
#include <memory>

#include "db/QuillaryDoc.h"
#include "ui/CommandTarget.h"

namespace quillary {

class DocumentHost;
class FrameWindow;
class Trash;

/// What a document tells its views when they have to act; the numbers never change.
inline constexpr int kNewRecordHint = 215;

class CDocumentSession : public CommandMap<CDocumentSession> {
  public:
    CDocumentSession(std::unique_ptr<CQuillaryDoc> doc, FileAccess& files, FrameWindow& frame, DocumentHost& host);

    [[nodiscard]] CQuillaryDoc& Doc() { return *m_doc; }
    [[nodiscard]] const CQuillaryDoc& Doc() const { return *m_doc; }

    /// What to Restore when saving the change that comes next fails.
    [[nodiscard]] std::shared_ptr<const CQuillaryDoc::State> BeforeChange();
    /// The database's name for titles and questions.
    [[nodiscard]] QString DisplayName() const;

    /// Writes what changed. False, after telling the user, when that failed; the change is then still in the document,
    /// and the next save tries again. A read-only database keeps its changes in memory.
    bool Save();
    /// The same for a change that goes back when that failed: the title does not call it unsaved meanwhile.
    [[nodiscard]] bool SaveOrRestore(const CQuillaryDoc::State& before);
    /// Writes what changed and waits for the disk, for another program to read the file. False, after telling the user,
    /// when that failed, also when the file is not there. The file of a read-only database stays as it is.
    [[nodiscard]] bool BringToDisk();
    /// Whether the database can be closed: all is on the disk, or the user gives up what cannot be saved.
    [[nodiscard]] bool Leave();
    /// Writes what an earlier save could not, when that needs no question. Tells nothing.
    void Retry();
    /// Waits until the last save is on the disk, and tells when it did not get there.
    void Finish();
    /// Moves the file to the trash, or deletes it where there is none, and closes the database without saving it.
    /// Stays open, after telling the user, when the file stays.
    void DeleteDatabase(Trash& trash);

    /// The view receives the document's hints through this.
    void OnUpdate(std::function<void(int hint)> onUpdate) { m_onUpdate = std::move(onUpdate); }

    [[nodiscard]] static std::span<const CommandEntry<CDocumentSession>> Commands();

  private:
    void OnNew();
    void OnSave() { Save(); }
    bool Save(bool tellsUnsaved);
    /// For all that needs a file which can be written.
    void UpdateWriting(CommandState& state) const;
    /// False when another program has moved or deleted it.
    [[nodiscard]] bool IsFileThere() const;
    /// Saves and waits for the disk.
    [[nodiscard]] bool SaveToDisk(bool overwrite, Failure& failure);
    /// What becomes of our changes and those that another program has written.
    [[nodiscard]] bool SettleForeignChange(const Failure& failure);
    /// Goes on in a new file that the user names. False when that was cancelled.
    [[nodiscard]] bool SaveElsewhere();
    /// Asks once before a save by which something of the file gets lost.
    [[nodiscard]] bool MayLose();

    std::unique_ptr<CQuillaryDoc> m_doc;
    FileAccess& m_files;
    FrameWindow& m_frame;
    DocumentHost& m_host;
    std::function<void(int)> m_onUpdate;
    bool m_mayLose = false;
};

}  // namespace quillary
