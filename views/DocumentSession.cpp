#include "views/DocumentSession.h"

#include <QFileDialog>
#include <string>
#include <utility>

#include "admin/DatabasePath.h"
#include "db/CopyBeside.h"
#include "db/Utf.h"
#include "platform/NativePath.h"
#include "ui/CommandIds.h"
#include "ui/FileFilter.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/OpenDialog.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"
#include "views/DeleteDatabase.h"
#include "views/DocumentHost.h"

namespace quillary {

namespace {

/// A name beside `path` that is not taken.
QString FreeName(const Path& path) {
    std::error_code ignored;
    Path free = path;
    for (int n = 2; std::filesystem::exists(free, ignored); ++n) {
        free.replace_filename(path.stem().native() + " " + std::to_string(n) + path.extension().native());
    }
    return FromPath(free.filename());
}

/// Under the name that a file at `path` stands for.
bool SaveAs(CQuillaryDoc& doc, const Path& path, Failure& failure) {
    const std::string name = DatabaseNameFor(path);
    const auto wide = Utf8ToWide(name);
    if (!wide) {
        failure.Set(Message::ImpossibleName, {name});
        return false;
    }
    const auto stored = StoredDatabaseName(*wide, doc.Page(), failure);
    return stored && doc.SaveDatabaseAs(path, *stored, failure);
}

}  // namespace

std::span<const CommandEntry<CDocumentSession>> CDocumentSession::Commands() {
    static constexpr CommandEntry<CDocumentSession> kCommands[] = {
        {ID_FILE_NEW, &CDocumentSession::OnNew, &CDocumentSession::UpdateWriting},
        {ID_FILE_SAVE, &CDocumentSession::OnSave, &CDocumentSession::UpdateWriting},
    };
    return kCommands;
}

CDocumentSession::CDocumentSession(std::unique_ptr<CQuillaryDoc> doc, FileAccess& files, FrameWindow& frame,
                                   DocumentHost& host)
    : m_doc(std::move(doc)), m_files(files), m_frame(frame), m_host(host) {
    m_doc->FlushInBackground(true);
}

QString CDocumentSession::DisplayName() const {
    const QString name = OnOneLine(FromWide(m_doc->Name()));
    return name.isEmpty() ? OnOneLine(FromPath(m_doc->FilePath().stem())) : name;
}

bool CDocumentSession::IsFileThere() const {
    FileStamp stamp;
    return m_files.StampOf(m_doc->FilePath(), stamp);
}

std::shared_ptr<const CQuillaryDoc::State> CDocumentSession::BeforeChange() {
    // Joins the last save first: when its flush failed the document counts as modified again, and Restore must keep
    // that.
    Failure toldByTheNextSave;
    (void)m_doc->FinishSave(toldByTheNextSave);
    return m_doc->Snapshot();
}

bool CDocumentSession::Save() { return Save(true); }

bool CDocumentSession::SaveOrRestore(const CQuillaryDoc::State& before) {
    const bool saved = Save(false);
    if (!saved) m_doc->Restore(before);
    m_frame.DocumentChanged();
    return saved;
}

bool CDocumentSession::Save(bool tellsUnsaved) {
    if (m_doc->IsReadOnly()) return true;
    if (m_host.IsReopening()) return false;  // what is unsaved has been given up
    if (m_doc->IsModified() && !MayLose()) return false;
    Failure failure;
    bool saved = false;
    {
        const WaitCursor wait;
        saved = m_doc->SaveDatabase(failure);
    }
    if (saved || tellsUnsaved) m_frame.DocumentChanged();
    if (saved) return true;
    // Behind the last dialog that is ended for leaving the database comes Leave, which asks about all that is not
    // saved.
    if (m_frame.IsEndingDialogs() && OpenDialog::All().empty()) return false;
    if (failure.message == Message::ChangedByAnother) return SettleForeignChange(failure);
    if (!IsFileThere()) {
        failure.Set(Message::FileGone, {m_doc->FilePath().string()});
        const QStringList answers = {QStringLiteral("Save Elsewhere..."), QStringLiteral("Cancel")};
        return AskUser(m_frame.Window(), FromUtf8(failure.text), answers) == 0 && SaveElsewhere();
    }
    ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    return false;
}

bool CDocumentSession::SettleForeignChange(const Failure& failure) {
    enum Answer { Elsewhere, Reload, Overwrite };
    const int answer = AskUser(m_frame.Window(), FromUtf8(failure.text),
                               {QStringLiteral("Save Elsewhere..."), QStringLiteral("Reload"),
                                QStringLiteral("Overwrite"), QStringLiteral("Cancel")});
    if (answer == Elsewhere) return SaveElsewhere();
    if (answer == Reload) m_host.ReopenDocument();
    if (answer != Overwrite) return false;
    Failure again;
    const bool saved = SaveToDisk(true, again);
    m_frame.DocumentChanged();
    if (saved) return true;
    ShowMessage(m_frame.Window(), FromUtf8(again.text));
    return false;
}

bool CDocumentSession::SaveElsewhere() {
    QFileDialog chooser(m_frame.Window(), QStringLiteral("Save database as"), FromPath(m_doc->FilePath().parent_path()),
                        DatabaseFileFilter());
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setDefaultSuffix(QStringLiteral("pdb"));
    chooser.setOption(QFileDialog::HideNameFilterDetails);
    chooser.setOption(QFileDialog::DontConfirmOverwrite);  // an existing database is never replaced
    chooser.selectFile(FreeName(m_doc->FilePath()));
    const OpenDialog open(chooser);
    while (chooser.exec() == QDialog::Accepted) {
        Failure failure;
        if (SaveAs(*m_doc, ToPath(chooser.selectedFiles().first()), failure)) {
            m_frame.DocumentChanged();
            m_host.DocumentMoved();
            return true;
        }
        ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    }
    return false;
}

bool CDocumentSession::SaveToDisk(bool overwrite, Failure& failure) {
    const WaitCursor wait;
    return (overwrite ? m_doc->OverwriteDatabase(failure) : m_doc->SaveDatabase(failure)) && m_doc->FinishSave(failure);
}

bool CDocumentSession::Leave() {
    Failure failure;
    (void)m_doc->FinishSave(failure);  // after a failed flush the document counts as modified
    if (m_doc->IsReadOnly()) return true;
    bool overwrite = false;
    while (m_doc->IsModified() || !IsFileThere()) {
        const std::string unsaved = FormatMessage(Message::NotSaved, {DisplayName().toStdString()});
        failure.Set(IsFileThere() ? Message::None : Message::FileGone, {m_doc->FilePath().string()});
        if (IsFileThere() && MayLose() && SaveToDisk(overwrite, failure)) return true;
        const QString elsewhere = QStringLiteral("Save Elsewhere...");
        const QString overwriteIt = QStringLiteral("Overwrite");
        const QString discard = QStringLiteral("Discard the Changes");
        QStringList answers = {elsewhere, discard, QStringLiteral("Cancel")};
        if (failure.message == Message::ChangedByAnother) answers.insert(1, overwriteIt);
        const std::string text = failure.message == Message::FileGone ? failure.text
                                 : failure.text.empty()               ? unsaved
                                                                      : failure.text + " " + unsaved;
        const QString answer = answers[AskUser(m_frame.Window(), FromUtf8(text), answers)];
        if (answer == discard) return true;
        if (answer == answers.last()) return false;
        overwrite = answer == overwriteIt;
        if (answer == elsewhere) (void)SaveElsewhere();
    }
    return true;
}

void CDocumentSession::Retry() {
    Failure untold;
    (void)m_doc->FinishSave(untold);
    const bool asks = !m_doc->LossBySaving().empty() && !m_mayLose;
    if (m_doc->IsModified() && !m_doc->IsReadOnly() && !asks) (void)SaveToDisk(false, untold);
}

bool CDocumentSession::BringToDisk() {
    Failure failure;
    if (!Save()) return false;
    if (!m_doc->FinishSave(failure)) {
        ShowMessage(m_frame.Window(), FromUtf8(failure.text));
        return false;
    }
    if (IsFileThere()) return true;
    ShowMessage(m_frame.Window(), FromUtf8(FormatMessage(Message::FileGone, {m_doc->FilePath().string()})));
    return false;
}

void CDocumentSession::Finish() {
    Failure failure;
    if (!m_doc->FinishSave(failure)) ShowMessage(m_frame.Window(), FromUtf8(failure.text));
}

void CDocumentSession::DeleteDatabase(Trash& trash) {
    Failure ignored;  // of a save that is thrown away
    (void)m_doc->FinishSave(ignored);
    Failure failure;
    if (DeleteDatabaseFile(m_files, trash, m_doc->FilePath(), failure)) {
        m_host.DropDocument();
    } else {
        ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    }
}

void CDocumentSession::OnNew() {
    if (m_onUpdate) m_onUpdate(kNewRecordHint);
}

void CDocumentSession::UpdateWriting(CommandState& state) const {
    if (m_doc->IsReadOnly()) state.Disable(FromUtf8(MessageText(Message::ReadOnly)));
}

bool CDocumentSession::MayLose() {
    if (m_doc->LossBySaving().empty() || m_mayLose) return true;
    enum Answer { SaveCopyFirst, GoOn };
    const int answer =
        AskUser(m_frame.Window(), FromUtf8(m_doc->LossBySaving()),
                {QStringLiteral("Save a Copy First"), QStringLiteral("Go On"), QStringLiteral("Cancel")});
    if (answer == SaveCopyFirst) {
        Failure failure;
        Path copy;
        m_mayLose = CopyBeside(m_files, m_doc->FilePath(), m_doc->FileImage(), copy, failure);
        if (!m_mayLose) ShowMessage(m_frame.Window(), FromUtf8(failure.text));
    } else {
        m_mayLose = answer == GoOn;
    }
    return m_mayLose;
}

}  // namespace quillary
