// The open database as the window works with it: saves it, tells what failed, and is the document's place in command
// routing.
#pragma once

#include <memory>

#include "db/QuillaryDoc.h"
#include "ui/CommandTarget.h"

namespace quillary {

class FrameWindow;

class CDocumentSession : public CommandMap<CDocumentSession> {
  public:
    CDocumentSession(std::unique_ptr<CQuillaryDoc> doc, FileAccess& files, FrameWindow& frame);

    [[nodiscard]] CQuillaryDoc& Doc() { return *m_doc; }
    [[nodiscard]] const CQuillaryDoc& Doc() const { return *m_doc; }

    /// What to Restore when saving the change that comes next fails.
    [[nodiscard]] std::shared_ptr<const CQuillaryDoc::State> BeforeChange();
    /// Writes what changed. False, after telling the user, when that failed; the change is then still in the document,
    /// and the next save tries again. A read-only database keeps its changes in memory.
    bool Save();
    /// Waits until the last save is on the disk, and tells when it did not get there.
    void Finish();

    [[nodiscard]] static std::span<const CommandEntry<CDocumentSession>> Commands();

  private:
    void OnSave() { Save(); }
    void UpdateSave(CommandState& state) const;
    /// Asks once before records of other programs get lost by a save.
    [[nodiscard]] bool MayDropForeignRecords();
    /// Copies the file as it was read to a free name beside it.
    [[nodiscard]] bool SaveCopyBeside(Failure& failure);

    std::unique_ptr<CQuillaryDoc> m_doc;
    FileAccess& m_files;
    FrameWindow& m_frame;
    bool m_mayDropForeignRecords = false;
};

}  // namespace quillary
