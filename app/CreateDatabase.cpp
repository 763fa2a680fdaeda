#include "app/CreateDatabase.h"

#include "admin/CreateDatabaseDlg.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

std::optional<Path> CreateDatabase(const NewDatabasePlace& place, FrameWindow& frame,
                                   const DefineFields& defineFields) {
    NewDatabase database(place);
    CCreateDatabaseDlg naming(database, QString(), nullptr, frame);
    if (naming.exec() != QDialog::Accepted) return std::nullopt;
    const auto fields = defineFields();
    if (!fields) return std::nullopt;

    Path path;
    const auto write = [&](Failure& failure) {
        const WaitCursor wait;
        return database.Write(*fields, path, failure);
    };
    Failure failure;
    if (write(failure)) return path;
    ShowMessage(frame.Window(), FromUtf8(failure.text));
    CCreateDatabaseDlg again(database, naming.Typed(), write, frame);
    if (again.exec() != QDialog::Accepted) return std::nullopt;
    return path;
}

}  // namespace quillary
