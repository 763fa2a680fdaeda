// What the record list costs in the window, on the off-screen platform, with the largest table: beside a plain table
// view whose cells are all the same.
#include <QAbstractTableModel>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>

#include "benchmarks/Figures.h"
#include "benchmarks/GeneratedTable.h"
#include "db/QuillaryDoc.h"
#include "platform/InputPanel.h"
#include "platform/NativePath.h"
#include "platform/Trash.h"
#include "platform/posix/PosixFileAccess.h"
#include "ui/FrameWindow.h"
#include "views/DocumentHost.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

namespace {

constexpr double kScrollAim = 0.008;
constexpr double kAccessibleAim = 0.010;

class NoQuestions : public Questions {
  public:
    void Tell(const Failure& failure) override { std::fprintf(stderr, "%s\n", failure.text.c_str()); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

/// A window for the list alone.
class Stage : public FrameWindow, public DocumentHost, public Trash {
  public:
    QWidget* Window() override { return nullptr; }
    void ShowRecordCounter(int, int) override {}
    void DocumentChanged() override {}
    void ShowHelp(std::string_view) override {}
    InputPanel& Panel() override { std::abort(); }
    void PostCommand(int) override {}
    void BeginDialog(CQuillaryDialog&) override {}
    void EndDialog(CQuillaryDialog&) override {}
    void CancelDialog() override {}
    void ReopenDocument() override {}
    void DropDocument() override {}
    bool Put(const std::filesystem::path&) override { return false; }
};

class ConstantCells : public QAbstractTableModel {
  public:
    int rowCount(const QModelIndex&) const override { return static_cast<int>(kGeneratedRecords); }
    int columnCount(const QModelIndex&) const override { return static_cast<int>(kGeneratedFields); }
    QVariant data(const QModelIndex&, int role) const override {
        return role == Qt::DisplayRole ? QStringLiteral("Constant text") : QVariant();
    }
};

/// A page down and its painting, up again from the end.
Measurement PageStep(QTableView& view) {
    return [&view] {
        QScrollBar* bar = view.verticalScrollBar();
        const int next = bar->value() + bar->pageStep();
        return Seconds([&] {
            bar->setValue(next > bar->maximum() ? 0 : next);
            view.viewport()->grab();
        });
    };
}

/// What a screen reader asks when the user comes to another row.
Measurement ReadRow(QTableView& view) {
    return [&view, row = 0]() mutable {
        row = (row + 7919) % static_cast<int>(kGeneratedRecords);
        return Seconds([&] {
            QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
            for (int column = 0; column < static_cast<int>(kGeneratedFields); ++column) {
                QAccessibleInterface* cell = list->tableInterface()->cellAt(row, column);
                if (cell) (void)cell->text(QAccessible::Name);
            }
        });
    };
}

void ShowAt(QTableView& view) {
    view.resize(1280, 800);
    view.show();
    QCoreApplication::processEvents();
}

int Run(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    const Path path = ToPath(folder.filePath(QStringLiteral("table.pdb")));
    PosixFileAccess files;
    Failure failure;
    NoQuestions questions;
    auto doc = std::make_unique<CQuillaryDoc>(files);
    if (!WriteGeneratedDatabase(files, path, failure) || !doc->OpenDatabase(path, OpenMode::Edit, questions)) return 1;
    Stage stage;
    CDocumentSession session(std::move(doc), files, stage, stage);
    CQuillaryView view(session, stage, stage);
    ShowAt(view);
    ConstantCells cells;
    QTableView plain;
    plain.setModel(&cells);
    plain.verticalHeader()->hide();
    ShowAt(plain);

    const std::vector<Figure> figures = {
        {"scroll a page and paint it", PageStep(view), "a plain table view, constant cells", PageStep(plain), 2},
        {"a row for a screen reader", ReadRow(view), "a plain table view, constant cells", ReadRow(plain), 2},
    };
    if (!RunFigures(figures, {argv, argv + argc})) return 2;
    const auto absolute = [](const char* name, const Measurement& measure, double aim) {
        double longest = 0;
        for (int i = 0; i < 200; ++i) longest = std::max(longest, measure());
        char ours[16], limit[16];
        std::snprintf(ours, sizeof ours, "%.2f ms", longest * 1000);
        std::snprintf(limit, sizeof limit, "%.0f ms", aim * 1000);
        PrintFigure(name, ours, limit, longest / aim, "at most 1", longest <= aim);
    };
    absolute("longest of 200 page steps", PageStep(view), kScrollAim);
    absolute("longest of 200 rows read", ReadRow(view), kAccessibleAim);
    return 0;
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) { return quillary::Run(argc, argv); }
