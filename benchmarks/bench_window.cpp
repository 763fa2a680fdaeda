// What the record list and the record form cost in the window, on the off-screen platform, with the largest table: the
// list beside a plain table view whose cells are all the same.
#include <QAbstractTableModel>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "benchmarks/Figures.h"
#include "benchmarks/GeneratedTable.h"
#include "db/QuillaryDoc.h"
#include "integration/Dialing.h"
#include "platform/DesktopLauncher.h"
#include "platform/InputPanel.h"
#include "platform/NativePath.h"
#include "platform/TelephoneLinks.h"
#include "platform/Trash.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileAccess.h"
#include "platform/posix/PosixLocale.h"
#include "platform/posix/PreferencesFile.h"
#include "query/Filter.h"
#include "query/Sort.h"
#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "views/DocumentHost.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

namespace {

constexpr double kScrollAim = 0.008;
constexpr double kAccessibleAim = 0.010;
constexpr double kFormAim = 0.050;
constexpr double kListAim = 0.100;

class NoQuestions : public Questions {
  public:
    void Tell(const Failure& failure) override { std::fprintf(stderr, "%s\n", failure.text.c_str()); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

/// A window for the list alone.
class Stage : public FrameWindow, public DocumentHost, public InputPanel, public Trash {
  public:
    QWidget* Window() override { return nullptr; }
    void ShowRecordCounter(int, int) override {}
    void DocumentChanged() override {}
    void ShowHelp(std::string_view) override {}
    InputPanel& Panel() override { return *this; }
    void PostCommand(int) override {}
    void EndDialog(CQuillaryDialog&) override {}
    void CancelDialog() override {}
    void DocumentMoved() override {}
    void ReopenDocument() override {}
    bool IsReopening() const override { return false; }
    void DropDocument() override {}
    bool Put(const std::filesystem::path&) override { return false; }
    void Show() override {}
    void Hide() override {}
    void BeginDialog(CQuillaryDialog& dialog) override { page = &dialog; }

    CQuillaryDialog* page = nullptr;
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

/// What the record form takes with the largest table, in seconds. Each leaves the form closed.
class FormBench {
  public:
    FormBench(CQuillaryView& view, CDocumentSession& session, Stage& stage)
        : m_view(view), m_session(session), m_stage(stage) {}

    double Open() {
        return Run([this](double begun) {
            Paint();
            m_taken = ProcessorSeconds() - begun;
            m_stage.page->reject();
        });
    }
    double Next() {
        return Run([this](double) {
            Paint();
            m_taken = Seconds([this] {
                m_stage.page->Control<QToolButton>(ID_FORM_NEXT)->click();
                Paint();
            });
            m_stage.page->reject();
        });
    }
    /// With a changed text, so that the list sorts anew, but without what the save takes.
    double Ok() {
        double begun = 0;
        (void)Run([this, &begun](double) {
            auto* edit = m_stage.page->Control<QLineEdit>(kChanged);
            edit->setText(edit->text() + QLatin1Char('x'));
            begun = ProcessorSeconds();
            m_stage.page->accept();
        });
        m_view.viewport()->grab();
        return ProcessorSeconds() - begun - SaveOnce();
    }

  private:
    static constexpr int kChanged = 108;  // a text of one line

    double Run(std::function<void(double)> act) {
        m_row = (m_row + 7919) % (kGeneratedRecords - 1);
        m_session.Finish();
        m_session.Doc().SetCurrentRecord(m_row);
        const double begun = ProcessorSeconds();
        QTimer::singleShot(0, [&act, begun] { act(begun); });
        m_view.OpenEditForm(false);
        return m_taken;
    }
    void Paint() {
        QCoreApplication::processEvents();
        m_stage.page->grab();
    }
    double SaveOnce() {
        m_session.Finish();
        m_session.Doc().SetStyle(m_session.Doc().Style() == DateStyle::Long ? DateStyle::Numeric : DateStyle::Long);
        return Seconds([this] { m_session.Save(); });
    }

    CQuillaryView& m_view;
    CDocumentSession& m_session;
    Stage& m_stage;
    std::size_t m_row = 0;
    double m_taken = 0;
};

/// What the window adds to a sort and a filter: the list built anew and painted, in seconds.
class QueryBench {
  public:
    QueryBench(CQuillaryView& view, CQuillaryDoc& doc) : m_view(view), m_doc(doc) {}

    double Sort() {
        m_descending = !m_descending;
        m_doc.SetSort({{"Room", m_descending}, {"Price", !m_descending}, {"Bought", m_descending}});
        SortRecords(m_doc);
        return Rebuild();
    }
    double Filter() {
        FilterSettings conditions;
        conditions.conditions = {{false, "Item", 1, "lamp"}};
        SetAndApplyFilter(m_doc, conditions);
        const double filtered = Rebuild();
        RemoveFilter(m_doc);
        return std::max(filtered, Rebuild());
    }

  private:
    double Rebuild() {
        return Seconds([this] {
            m_view.RebuildList(false, false);
            QCoreApplication::processEvents();
            m_view.viewport()->grab();
        });
    }

    CQuillaryView& m_view;
    CQuillaryDoc& m_doc;
    bool m_descending = false;
};

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
    const PosixClock clock;
    const PosixLocale locale;
    const PreferencesFile settings(ToPath(folder.filePath(QStringLiteral("preferences"))), "Preferences");
    DesktopLauncher launcher;
    TelephoneLinks phone(launcher);
    Dialing dialing(phone, questions);
    const PersonalStoreFactory noStore;
    const FormSurroundings surroundings{clock, locale, settings, dialing, launcher, noStore};
    CQuillaryView view(session, stage, stage, surroundings);
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
    const auto absolute = [](const char* name, const Measurement& measure, double aim, int times = 200) {
        double longest = 0;
        for (int i = 0; i < times; ++i) longest = std::max(longest, measure());
        char ours[16], wanted[32];
        std::snprintf(ours, sizeof ours, "%.2f ms", longest * 1000);
        std::snprintf(wanted, sizeof wanted, "at most %.0f ms", aim * 1000);
        PrintFigure({name, ours, "", "", 0, wanted, longest <= aim});
    };
    absolute("longest of 200 page steps", PageStep(view), kScrollAim);
    absolute("longest of 200 rows read", ReadRow(view), kAccessibleAim);
    CQuillaryView fresh(session, stage, stage, surroundings);  // of which no screen reader holds cells
    ShowAt(fresh);
    FormBench form(fresh, session, stage);
    session.Doc().SetSort({{"Item", false}});
    SortRecords(session.Doc());
    session.Save();  // records then lie in the order of the list, as in a file that was opened
    absolute(
        "longest of 50 forms opened", [&form] { return form.Open(); }, kFormAim, 50);
    absolute(
        "longest of 50 Next", [&form] { return form.Next(); }, kFormAim, 50);
    absolute(
        "longest of 20 OK, sorted anew, without the save", [&form] { return form.Ok(); }, kFormAim, 20);
    QueryBench query(fresh, session.Doc());
    absolute(
        "longest of 20 sorts, what the list adds", [&query] { return query.Sort(); }, kListAim, 20);
    absolute(
        "longest of 20 filters, what the list adds", [&query] { return query.Filter(); }, kListAim, 20);
    return 0;
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) { return quillary::Run(argc, argv); }
