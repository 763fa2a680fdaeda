#include "app/DocListFiles.h"

#include <QPointer>
#include <QWidget>

#include "admin/RenameDatabase.h"
#include "db/AnsiText.h"
#include "db/Container.h"
#include "db/CopyBeside.h"
#include "platform/Launcher.h"
#include "ui/MessageBox.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"
#include "views/DeleteDatabase.h"

namespace quillary {

namespace {

/// The name that the database calls itself; empty when there is none to be read.
QString OwnName(FileAccess& files, const Path& path) {
    const WaitCursor wait;
    FileError error;
    Image image;
    const auto file = files.Open(path, LockKind::Shared, error);
    const bool isRead = file && file->Read(image, error);
    const auto header = isRead ? DatabaseHeader::Read(image.Bytes()) : std::nullopt;
    return header ? OnOneLine(FromWide(AnsiText::Windows1252().ToWide(header->Name()))) : QString();
}

}  // namespace

void CDocListFiles::ShowInFolder(const Path& path) {
    m_launcher.ShowInFolder(path, [window = QPointer<QWidget>(&m_window)] {
        if (window) ShowMessage(window, QStringLiteral("The folder could not be shown: no file manager answers."));
    });
}

std::optional<Path> CDocListFiles::Rename(const Path& path, const QString& name) {
    Failure failure;
    Path renamed;
    if (RenameDatabase(m_files, path, name.toStdString(), renamed, failure)) return renamed;
    ShowMessage(&m_window, FromUtf8(failure.text));
    return std::nullopt;
}

std::optional<Path> CDocListFiles::Copy(const Path& path) {
    Failure failure;
    Path copy;
    bool copied = false;
    {
        const WaitCursor wait;
        copied = CopyFileBeside(m_files, path, copy, failure);
    }
    if (copied) return copy;
    ShowMessage(&m_window, FromUtf8(failure.text));
    return std::nullopt;
}

bool CDocListFiles::Delete(const Path& path, const QString& name) {
    const QString own = OwnName(m_files, path);
    QString question =
        QStringLiteral("The database \"%1\" is about to be deleted.  Are you sure?").arg(own.isEmpty() ? name : own);
    // Its copies have the same name.
    if (!own.isEmpty() && own != name) question += QStringLiteral("\n\nIt is \"%1\" in the list.").arg(name);
    if (AskUser(&m_window, question, {QStringLiteral("Yes"), QStringLiteral("No")}, 1) != 0) return false;
    Failure failure;
    if (DeleteDatabaseFile(m_files, m_trash, path, failure)) return true;
    ShowMessage(&m_window, FromUtf8(failure.text));
    return false;
}

}  // namespace quillary
