#include "tests/ui/WindowTest.h"

#include <QMenu>
#include <QMenuBar>

namespace quillary {

bool WindowFiles::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                                FileError& error) {
    ++saves;
    if (full.empty() || recoveryPath.native().rfind(full.native(), 0) != 0)
        return MemoryFiles::WriteRecovery(recoveryPath, head, body, error);
    error = {FileError::Kind::Full, "No space left on device"};
    return false;
}

bool TestTrash::Put(const Path& file) {
    const auto found = there ? m_files.contents.find(file.string()) : m_files.contents.end();
    if (found == m_files.contents.end()) return false;
    contents[file.string()] = found->second;
    m_files.contents.erase(found);
    return true;
}

WindowTest::WindowTest() {
    app.Frame().show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&app.Frame()));
}

CQuillaryDoc* WindowTest::Open(const std::string& image, const Path& path) {
    app.CloseDocument();  // the same path again would only come to the front
    files.contents[path.string()] = image;
    CQuillaryDoc* doc = app.OpenDocumentFile(path);
    QTest::qWait(0);
    return doc;
}

void WindowTest::ChooseMenu(const QString& popup, const QString& item) {
    auto* bar = app.Frame().findChild<QMenuBar*>();
    for (QAction* caption : bar->actions()) {
        if (caption->text().remove(u'&') != popup) continue;
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(caption).center());
        for (QAction* action : caption->menu()->actions()) {
            if (action->text().remove(u'&') != item) continue;
            QTest::mouseClick(caption->menu(), Qt::LeftButton, {}, caption->menu()->actionGeometry(action).center());
            caption->menu()->hide();                      // a click on a disabled item leaves it open
            QApplication::setActiveWindow(&app.Frame());  // as a window manager does
            return;
        }
    }
    ADD_FAILURE() << "no " << item.toStdString() << " in " << popup.toStdString();
}

QString WindowTest::Counter() {
    const auto* counter = app.Frame().findChild<QLabel*>(QStringLiteral("1039"));
    return counter && counter->isVisible() ? counter->text() : QString();
}

CQuillaryView* WindowTest::View() { return dynamic_cast<CQuillaryView*>(app.Frame().findChild<QTableView*>()); }

QString WindowTest::Cell(int row, int column) { return View()->model()->index(row, column).data().toString(); }

std::string WindowTest::CloseAndReadFile(const Path& path) {
    app.CloseDocument();
    return files.contents[path.string()];
}

const CQuillaryDoc& WindowTest::Stored(const Path& path) {
    ScriptedQuestions questions;
    EXPECT_TRUE(m_stored.emplace(files).OpenDatabase(path, OpenMode::Read, questions)) << path;
    return *m_stored;
}

ImageParts PeopleParts() {
    ImageParts parts;
    parts.name = "People";
    parts.AddSchema({"Name", "Age", "Born", "Member"}, {"T", "F", "D", "B"}, {"120", "60", "90", "70"});
    parts.Add(2, {"Ada", "36", "36500", "true"});
    parts.Add(2, {"Bob\r\nsecond line", "7", "", "false"});
    parts.Add(2, {"100%% of %d", "-1", "0", "1"});
    return parts;
}

}  // namespace quillary
