#include "views/DocumentSession.h"

#include <string>
#include <utility>

#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

std::span<const CommandEntry<CDocumentSession>> CDocumentSession::Commands() {
    static constexpr CommandEntry<CDocumentSession> kCommands[] = {
        {ID_FILE_SAVE, &CDocumentSession::OnSave, &CDocumentSession::UpdateSave},
    };
    return kCommands;
}

CDocumentSession::CDocumentSession(std::unique_ptr<CQuillaryDoc> doc, FileAccess& files, FrameWindow& frame)
    : m_doc(std::move(doc)), m_files(files), m_frame(frame) {
    m_doc->FlushInBackground(true);
}

std::shared_ptr<const CQuillaryDoc::State> CDocumentSession::BeforeChange() {
    // Joins the last save first: when its flush failed the document counts as modified again, and Restore must keep
    // that.
    Failure toldByTheNextSave;
    (void)m_doc->FinishSave(toldByTheNextSave);
    return m_doc->Snapshot();
}

bool CDocumentSession::Save() {
    if (m_doc->IsReadOnly()) return true;
    if (m_doc->IsModified() && !MayDropForeignRecords()) return false;
    Failure failure;
    bool saved = false;
    {
        const WaitCursor wait;
        saved = m_doc->SaveDatabase(failure);
    }
    if (!saved) ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    return saved;
}

void CDocumentSession::Finish() {
    Failure failure;
    if (!m_doc->FinishSave(failure)) ShowMessage(m_frame.Window(), FromUtf8(failure.text));
}

void CDocumentSession::UpdateSave(CommandState& state) const {
    if (m_doc->IsReadOnly()) state.Disable(FromUtf8(MessageText(Message::ReadOnly)));
}

bool CDocumentSession::MayDropForeignRecords() {
    if (m_doc->ForeignRecordCount() == 0 || m_mayDropForeignRecords) return true;
    enum Answer { SaveCopyFirst, GoOn };
    const int answer =
        AskUser(m_frame.Window(),
                FromUtf8(FormatMessage(Message::ForeignRecords, {std::to_string(m_doc->ForeignRecordCount())})),
                {QStringLiteral("Save a Copy First"), QStringLiteral("Go On"), QStringLiteral("Cancel")});
    if (answer == SaveCopyFirst) {
        Failure failure;
        m_mayDropForeignRecords = SaveCopyBeside(failure);
        if (!m_mayDropForeignRecords) ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    } else {
        m_mayDropForeignRecords = answer == GoOn;
    }
    return m_mayDropForeignRecords;
}

bool CDocumentSession::SaveCopyBeside(Failure& failure) {
    const Path& original = m_doc->FilePath();
    FileError error;
    std::unique_ptr<LockedFile> copy;
    Path path;
    for (int n = 1; !copy && (n == 1 || error.kind == FileError::Kind::Exists); ++n) {
        const std::string mark = n == 1 ? " (copy)" : " (copy " + std::to_string(n) + ")";
        path = original;
        path.replace_filename(original.stem().native() + mark + original.extension().native());
        copy = m_files.Create(path, error);
    }
    if (copy && copy->WriteAt(0, m_doc->FileImage(), error) && copy->Flush(error)) return true;
    failure.Set(Message::WriteFailed, {error.reason});
    if (copy) {
        FileError ignored;
        (void)m_files.Remove(path, ignored);
    }
    return false;
}

}  // namespace quillary
