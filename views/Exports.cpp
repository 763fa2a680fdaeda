#include "views/Exports.h"

#include <QLocale>
#include <QPointer>
#include <QWidget>
#include <chrono>
#include <filesystem>
#include <vector>

#include "db/Clock.h"
#include "integration/ExportCalendarDlg.h"
#include "integration/ExportContactsDlg.h"
#include "integration/ExportRun.h"
#include "platform/DesktopLauncher.h"
#include "ui/CommandTarget.h"
#include "ui/FrameWindow.h"
#include "ui/LongWork.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"
#include "views/EditRecordDlg.h"

namespace quillary {

namespace {

using std::filesystem::path;

constexpr std::size_t kMostOpened = 5;  // more would bring up more programs than a person can look at
constexpr std::chrono::milliseconds kPatience{500};

struct Kind {
    QString opening;  // while the store starts up
    QString one;
    QString several;
    QString program;  // that opens the files
};

Kind Appointments() {
    return {QStringLiteral("Opening the calendar..."), QStringLiteral("appointment"), QStringLiteral("appointments"),
            QStringLiteral("calendar program")};
}

Kind Contacts() {
    return {QStringLiteral("Opening the address book..."), QStringLiteral("contact"), QStringLiteral("contacts"),
            QStringLiteral("address book program")};
}

QString Grouped(std::size_t number) { return QLocale(QLocale::English).toString(static_cast<qulonglong>(number)); }

void OfferToOpen(const std::vector<path>& files, const Kind& kind, Launcher& launcher, QWidget* window) {
    if (files.empty()) return;
    const QString number = Grouped(files.size());
    const QString folder = QString::fromStdString(files.front().parent_path().string());
    const auto show = [&] {
        launcher.ShowInFolder(files.front(), [window = QPointer<QWidget>(window), folder] {
            if (window) ShowMessage(window, QStringLiteral("No program answers. The files are in %1.").arg(folder));
        });
    };
    if (files.size() > kMostOpened) {
        const QString question = QStringLiteral("%1 %2 were written to files in %3. Show the folder?");
        const QString filled = question.arg(number, kind.several, folder);
        if (AskUser(window, filled, {QStringLiteral("Show"), QStringLiteral("Close")}) == 0) show();
        return;
    }
    const QString question =
        files.size() == 1
            ? QStringLiteral("The %1 was written to a file. Open it in the desktop's %2?").arg(kind.one, kind.program)
            : QStringLiteral("%1 %2 were written to files. Open them in the desktop's %3?")
                  .arg(number, kind.several, kind.program);
    if (AskUser(window, question, {QStringLiteral("Open"), QStringLiteral("Close")}) != 0) return;
    for (const path& file : files) {
        if (!launcher.OpenLink(FileLink(file))) {
            show();
            return;
        }
    }
}

// False when the user has stopped it.
bool Run(std::size_t count, const std::function<ExportRun::Item(std::size_t)>& makeItem, const Kind& kind,
         const FormSurroundings& surroundings, FrameWindow& frame) {
    if (count == 0) return true;
    ExportRun run(surroundings.makePersonalStore(), count, makeItem);
    const auto progress = [&] {
        if (!run.IsWriting()) return kind.opening;
        return QStringLiteral("Exporting %1 of %2 records...").arg(Grouped(run.Tried()), Grouped(count));
    };
    if (!WaitForWork(frame.Window(), progress, [&run] { return run.Advance(); })) {
        const bool hasEnded = run.Stop(kPatience);
        if (frame.IsEndingDialogs() || run.Tried() == 0) return false;
        if (hasEnded && !run.Files().empty()) {
            OfferToOpen(run.Files(), kind, surroundings.launcher, frame.Window());
        } else {
            const QString told = QStringLiteral("%1 of %2 records were exported.");
            ShowMessage(frame.Window(), told.arg(Grouped(run.Tried()), Grouped(count)));
        }
        return false;
    }
    for (const Failure& failure : run.Messages()) {
        ShowMessageAndReason(frame.Window(), FromUtf8(failure.text), failure.reason);
    }
    OfferToOpen(run.Files(), kind, surroundings.launcher, frame.Window());
    return true;
}

// The rows to export; nullopt when the user thinks better of it.
std::optional<std::vector<std::size_t>> RowsToExport(const CQuillaryDoc& doc, std::optional<std::size_t> row,
                                                     int dateField, const DateHabits& habits, QWidget* window) {
    std::vector<std::size_t> all;
    std::vector<std::size_t> dated;
    for (std::size_t k = row.value_or(0); k < (row ? *row + 1 : doc.Shown().size()); ++k) {
        all.push_back(k);
        if (HasDate(doc, k, dateField, habits)) dated.push_back(k);
    }
    if (dated.size() == all.size()) return all;
    const std::string number = std::to_string(all.size() - dated.size());
    const QString question = FromUtf8(FormatMessage(Message::ExportWithoutDate, {number}));
    enum Answer { Yes, No };
    switch (AskUser(window, question, {QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Cancel")})) {
        case Yes:
            return all;
        case No:
            // With nothing left the user is back in the dialog.
            return dated.empty() ? std::nullopt : std::optional(std::move(dated));
        default:
            return std::nullopt;
    }
}

DateHabits HabitsOf(const FormSurroundings& surroundings) {
    return {surroundings.locale.Order(), CenturyOf(surroundings.clock)};
}

}  // namespace

void RequireDateField(const CQuillaryDoc& doc, CommandState& state) {
    if (OfferedFields(doc, FieldType::Date, std::nullopt).empty()) {
        state.Disable(QStringLiteral("This database has no field of the type Date."));
    }
}

void ExportToCalendar(const CQuillaryDoc& doc, std::optional<std::size_t> row, const FormSurroundings& surroundings,
                      FrameWindow& frame) {
    CExportCalendarDlg dialog(doc, row, frame);
    dialog.StoreWith([&] {
        const DateHabits habits = HabitsOf(surroundings);
        const CalendarFields& fields = dialog.Fields();
        const auto rows = RowsToExport(doc, row, fields.date, habits, frame.Window());
        if (!rows) return false;
        const auto makeItem = [&](std::size_t k) { return MakeAppointment(doc, (*rows)[k], fields, habits); };
        return Run(rows->size(), makeItem, Appointments(), surroundings, frame);
    });
    dialog.exec();
}

void ExportToContacts(const CQuillaryDoc& doc, const FormSurroundings& surroundings, FrameWindow& frame) {
    CExportContactsDlg dialog(doc, frame);
    dialog.StoreWith([&] {
        const DateHabits habits = HabitsOf(surroundings);
        const auto makeItem = [&](std::size_t row) { return MakeContact(doc, row, dialog.Fields(), habits); };
        return Run(doc.Shown().size(), makeItem, Contacts(), surroundings, frame);
    });
    dialog.exec();
}

}  // namespace quillary
