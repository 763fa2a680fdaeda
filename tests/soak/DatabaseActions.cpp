// On whole databases: from their list, handed over, from the catalogue, deleted, and left again.
#include <QTreeWidget>

#include "app/DocListModel.h"
#include "app/HandOver.h"
#include "tests/soak/Soak.h"

namespace quillary::soak {

namespace {

/// Clicks the row of a database, once it is there, and then asks for something by a key or the row's menu.
void AskFor(Soak& s, const Path& path, int key, const char* item) {
    s.Log("database " + path.string());
    auto* folders = s.Frame().findChild<QComboBox*>();
    if (folders->isEnabled()) s.Choose(folders, 0);
    QTreeView* list = s.Databases();
    const QModelIndex row = static_cast<CDocListModel*>(list->model())->IndexOf(path);
    s.Expect(row.isValid(), path.string() + " is in the list");
    list->setFocus();
    list->scrollTo(row);
    const QPoint at = list->visualRect(row).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    s.Percent(50) ? s.Key(list, key) : s.FromContextMenu(list->viewport(), at, item);
}

void OpenFromList(Soak& s) {
    const Path path = s.AnyPath();
    if (s.Percent(12)) s.files.readOnly.insert(path);
    s.handedOver = path;
    // One that is hidden is not offered by the chooser.
    if (s.Percent(75) || path.filename().string().starts_with('.')) return AskFor(s, path, Qt::Key_Return, "Open");
    s.chosenFile = QString::fromStdString(path.string());
    s.Click(s.Frame().findChild<QWidget*>("57601"), {9, 9});  // "Open Other..."
}

void Delete(Soak& s) {
    const Path path = s.open ? *s.open : s.AnyPath();
    const bool isSure = s.disk.size() > 3 && s.Percent(60);
    s.Answer("is about to be deleted.  Are you sure?", {isSure ? "Yes" : "No"});
    s.open ? s.Command(ID_DATABASE_DELETE, !s.IsReadOnly()) : AskFor(s, path, Qt::Key_Delete, "Delete...");
    if (!isSure || s.IsReadOnly()) return;
    s.disk.erase(path);
    s.Closed();
}

void HandOver(Soak& s) {
    s.handedOver = s.AnyPath();
    s.app->HandOver().Receive({s.handedOver->native(), {}});
}

void Download(Soak& s) {
    if (s.HasManyFiles()) return;
    s.On(203, [&s](CQuillaryDialog& page) { s.Press(page, kOkButton); });
    s.On(205, [&s](CQuillaryDialog& page) {
        if (page.Control<QWidget>(ID_RESULTS_NEXT)->isEnabled() && s.Percent(70)) s.Press(page, ID_RESULTS_NEXT);
        auto* list = page.Control<QTreeWidget>(1017);
        for (int k = 0; k < list->topLevelItemCount(); ++k) s.Key(list, s.Percent(50) ? Qt::Key_Space : Qt::Key_Down);
        s.Press(page, kOkButton);
    });
    s.Play(ID_APP_DOWNLOAD);
}

}  // namespace

const std::vector<Action> kDatabaseActions = {
    {"opens a database", Action::List, 30, OpenFromList},
    {"deletes a database", Action::Any, 2, Delete},
    {"hands a file over", Action::Any, 3, HandOver},
    {"leaves the database", Action::Open, 8, [](Soak& s) { s.Leave(); }},
    {"quits", Action::Any, 2, [](Soak& s) { s.Command(ID_APP_EXIT); }},
    {"downloads", Action::List, 5, Download},
    {"plays about", Action::Any, 24, [](Soak& s) { s.Play(); }},
};

}  // namespace quillary::soak
