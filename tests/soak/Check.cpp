// What the user of the soak knows of the files and the window, and whether it holds.
#include <QApplication>
#include <QLabel>

#include "db/Password.h"
#include "tests/soak/Soak.h"
#include "ui/OpenDialog.h"

namespace quillary::soak {

QString Soak::Password(const Path& path) const {
    const auto opens = [&](const QString& one) {
        return HashPassword(kDatabasePassword, one.toStdU16String(), AnsiText::Windows1252()) == disk.at(path).password;
    };
    return *std::find_if(kPasswords.begin(), kPasswords.end() - 1, opens);
}

void Soak::Closed() {
    open.reset();
    isUnsaved = false;
    files.readOnly.clear();
}

void Soak::Opened(const Path& path) {
    isUnsaved = false;
    open = path;
    mem = disk.at(path);
    Expect(View(), "a database is open");
}

void Soak::AdoptNewFiles() {
    for (const char* folder : {"Documents", "card"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            if (!entry.is_regular_file() || disk.contains(entry.path())) continue;
            const auto found = ReadFile(others, entry.path());
            Expect(found.has_value(), entry.path().string() + " is a database");
            disk[entry.path()] = *found;
        }
    }
}

Database Soak::Now() {
    const bool isThere = View() && handedOver.value_or(*open) == *open;
    const auto now = isThere ? ContentOf(*app->OpenDocumentFile(*open)) : ReadFile(others, *open);
    Expect(now.has_value(), open->string() + " opens");
    return *now;
}

void Soak::Adopt() {
    const auto before = std::exchange(disk, {});
    AdoptNewFiles();
    for (const Path& path : files.readOnly) {
        Expect(!disk.contains(path) || before.at(path).Difference(disk[path]).empty(),
               "what is read only stays as it is");
    }
    Closed();
    if (View()) Opened(desktop.recentFiles.paths.back());
}

void Soak::Check(bool allFiles) {
    Expect(OpenDialog::All().empty() && !QApplication::activeModalWidget() && !QApplication::activePopupWidget(),
           "nothing is left open");
    Expect(QGuiApplication::mouseButtons() == Qt::NoButton, "no mouse button is held");
    for (const auto& [path, database] : disk) {
        if (!allFiles && path != open) continue;
        const auto found = ReadFile(others, path);
        Expect(found.has_value(), path.string() + " opens");
        const std::string difference = database.Difference(*found);
        if (!difference.empty()) Fail(path.string() + ' ' + difference);
        const std::string departure = CheckFile(path);
        if (!departure.empty()) Fail(path.string() + " departs from the format: " + departure);
    }
    for (const char* folder : {"Documents", "card", "state"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            Expect(entry.is_directory() || disk.contains(entry.path()), entry.path().string() + " is no stray file");
        }
    }
    const std::string shown = WindowDifference();
    if (!shown.empty()) Fail(shown);
}

std::string Soak::WindowDifference() {
    if (open.has_value() != (View() != nullptr)) return open ? "no database is open" : "a database is open";
    std::string difference;
    const auto expect = [&difference](const QString& shown, const QString& wanted, const std::string& where) {
        if (!difference.empty() || shown == wanted) return;
        difference = where + " shows [" + shown.toStdString() + "], not [" + wanted.toStdString() + ']';
    };
    const auto wide = [](const std::string& text) {
        return QString::fromStdU16String(AnsiText::Windows1252().ToWide(text));
    };
    const QString mark = IsReadOnly() ? " (read only)" : isUnsaved ? "*" : "";
    expect(Frame().windowTitle(), open ? wide(mem.name) + mark : "Quillary", "the title");
    if (!open) return difference;
    const QAbstractItemModel& list = *View()->model();
    const int rows = static_cast<int>(mem.shown.size());
    expect(QString::number(list.rowCount()), QString::number(rows), "the number of rows");
    for (int cell = 0; cell < rows * static_cast<int>(mem.fields.size()); ++cell) {
        const int row = cell % rows;
        const int column = cell / rows;
        expect(list.index(row, column).data().toString(), wide(mem.Cell(row, column)),
               "row " + std::to_string(row) + ", column " + std::to_string(column));
    }
    auto* label = Frame().findChild<QLabel*>("1039");
    expect(label->text(), QString("%1 of %2").arg(rows > 0 ? View()->GetSelectedRow() + 1 : 0).arg(rows),
           "the counter");
    const auto hidden = mem.hidden.size();
    expect(label->accessibleDescription(), hidden > 0 ? QString("%1 records are hidden").arg(hidden) : QString(),
           "the counter's tooltip");
    return difference;
}

}  // namespace quillary::soak
