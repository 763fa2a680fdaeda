#include "remote/DownloadProgressDlg.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "admin/SaveToPathDlg.h"
#include "db/AnsiText.h"
#include "platform/NativePath.h"
#include "remote/DownloadRun.h"
#include "remote/RemoteCatalog.h"
#include "ui/FrameWindow.h"
#include "ui/HelpTopics.h"
#include "ui/MessageBox.h"
#include "ui/UserMessages.h"
#include "ui/WideText.h"
#include "ui/WrappingLabel.h"

namespace quillary {

namespace {

constexpr int kBar = 1060;
constexpr int kStatus = 1061;
constexpr int kFile = 1062;
constexpr int kSummary = 1063;
constexpr qsizetype kMostLetters = 120;
constexpr DialogInfo kDialog{213, u"Downloading Files", {}, kTopicRemoteResults};

class DownloadMessage : public QEvent {
  public:
    DownloadMessage(Type type, std::size_t messageNumber, std::string fileName)
        : QEvent(type), number(messageNumber), name(std::move(fileName)) {}
    const std::size_t number;  // of files to fetch, or of the result that one belongs to
    const std::string name;    // in the code page
};

QString Shown(const std::string& name, const AnsiText& page) {
    const QString text = OnOneLine(FromWide(page.ToWide(name)));
    return text.size() > kMostLetters ? text.left(kMostLetters) + QChar(0x2026) : text;
}

}  // namespace

CDownloadProgressDlg::CDownloadProgressDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame)
    : CDownloadProgressDlg(catalog, place, frame, new QWidget) {}

CDownloadProgressDlg::CDownloadProgressDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame,
                                           QWidget* content)
    : CQuillaryDialog(kDialog, *content, frame),
      m_catalog(catalog),
      m_place(place),
      m_status(new CWrappingLabel),
      m_file(new CWrappingLabel),
      m_bar(new QProgressBar),
      m_summary(new CWrappingLabel) {
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 2);
    const std::pair<QWidget*, int> kControls[] = {
        {m_status, kStatus}, {m_file, kFile}, {m_bar, kBar}, {m_summary, kSummary}};
    for (const auto& [widget, id] : kControls) {
        widget->setObjectName(QString::number(id));
        column->addWidget(widget);
    }
    m_bar->setAccessibleName(QStringLiteral("Progress"));
    m_bar->setTextVisible(false);
    Control<QPushButton>(kOkButton)->hide();
    auto* buttons = findChild<QDialogButtonBox*>();
    disconnect(buttons, &QDialogButtonBox::rejected, this, nullptr);
    connect(buttons, &QDialogButtonBox::rejected, this, &CDownloadProgressDlg::AskToCancel);
}

CDownloadProgressDlg::~CDownloadProgressDlg() = default;

void CDownloadProgressDlg::Load() {
    m_status->setText(QStringLiteral("Initializing"));
    m_bar->setRange(0, 0);  // it is not known yet
    m_run = std::make_unique<DownloadRun>(
        m_catalog, m_place.files, m_place.page,
        DownloadRun::Events{
            [this](std::size_t files) { Post(kDownloadStartMessage, files); },
            [this] { return WaitForFolder(); },
            [this](std::size_t result, const std::string& name) { Post(kDownloadFileMessage, result, name); },
            [this] { Post(kDownloadDoneMessage); },
        });
}

void CDownloadProgressDlg::FocusFirst() {
    Control<QPushButton>(m_state == State::Finished ? kOkButton : kCancelButton)->setFocus();
}

const std::vector<Path>& CDownloadProgressDlg::Kept() const { return m_run->Kept(); }

void CDownloadProgressDlg::Show(QLabel& label, const QString& text) {
    label.setText(text);
    label.setAccessibleName(text);
}

// ---- From the download's thread

void CDownloadProgressDlg::Post(QEvent::Type message, std::size_t number, const std::string& name) {
    QCoreApplication::postEvent(this, new DownloadMessage(message, number, name));
}

std::optional<Path> CDownloadProgressDlg::WaitForFolder() {
    QMetaObject::invokeMethod(
        this, [this] { AskForFolder(); }, Qt::QueuedConnection);
    return m_folder.get_future().get();
}

bool CDownloadProgressDlg::event(QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != kDownloadStartMessage && type != kDownloadFileMessage && type != kDownloadDoneMessage) {
        return CQuillaryDialog::event(event);
    }
    const auto& message = static_cast<const DownloadMessage&>(*event);
    if (type == kDownloadStartMessage) {
        m_bar->setRange(0, std::max(static_cast<int>(message.number), 1));
        m_bar->setValue(0);
    } else if (type == kDownloadFileMessage) {
        m_bar->setValue(m_bar->value() + 1);
        if (m_state != State::Running) return true;
        m_status->setText(QStringLiteral("Downloading:"));
        Show(*m_file, Shown(message.name, m_place.page));
    } else {
        Finish();
    }
    return true;
}

// ---- The folder

void CDownloadProgressDlg::AskForFolder() {
    m_isFolderWanted = m_isAsking;
    if (m_isFolderGiven || m_isAsking) return;
    CSaveToPathDlg dialog(m_place.locations, Frame());
    const bool isChosen = dialog.exec() == Accepted;
    GiveFolder(isChosen ? std::optional<Path>(dialog.ResultPath()) : std::nullopt);
    FocusFirst();
}

void CDownloadProgressDlg::GiveFolder(std::optional<Path> folder) {
    if (!std::exchange(m_isFolderGiven, true)) m_folder.set_value(std::move(folder));
}

// ---- The end

void CDownloadProgressDlg::AskToCancel() {
    if (m_state == State::Finished) {
        accept();
        return;
    }
    if (m_state == State::Cancelling) {
        m_catalog.Session().Cancel();
        return;
    }
    if (IsSureToCancel() && m_state == State::Running) BeginCancelling();  // all may be done meanwhile
}

bool CDownloadProgressDlg::IsSureToCancel() {
    m_isAsking = true;
    const bool isSure = AskUser(Frame().Window(), QStringLiteral("Are you sure you want to cancel the download?"),
                                {QStringLiteral("Yes"), QStringLiteral("No")}) == 0;
    m_isAsking = false;
    if (!isSure && m_state == State::Running && std::exchange(m_isFolderWanted, false)) {
        QMetaObject::invokeMethod(
            this, [this] { AskForFolder(); }, Qt::QueuedConnection);
    }
    return isSure;
}

void CDownloadProgressDlg::BeginCancelling() {
    m_state = State::Cancelling;
    m_run->Stop();
    GiveFolder(std::nullopt);
    m_status->setText(QStringLiteral("Cancelling download."));
    Show(*m_file, QStringLiteral("Please stand by."));
    FocusFirst();
}

void CDownloadProgressDlg::Finish() {
    const State state = std::exchange(m_state, State::Finished);
    if (state == State::Finished) return;
    m_run->Wait();
    m_catalog.Session().Resume();
    if (state == State::Cancelling) {
        CQuillaryDialog::reject();
        return;
    }
    m_status->setText(QStringLiteral("Download Complete."));
    Show(*m_file, {});
    m_bar->setValue(m_bar->maximum());
    Show(*m_summary, Summary());
    Control<QPushButton>(kOkButton)->show();
    Control<QPushButton>(kCancelButton)->hide();
    FocusFirst();
}

QString CDownloadProgressDlg::Summary() const {
    const auto& missed = m_run->NotFetched();
    const QString folder = Kept().empty() ? QString() : OnOneLine(FromPath(Kept().front().parent_path()));
    if (missed.empty()) {
        return Kept().empty() ? QStringLiteral("No file was downloaded.") : QStringLiteral("Saved in ") + folder;
    }
    const QString first = Shown(missed.front().name, m_place.page);
    const QString reason = FromUtf8(missed.front().reason);
    QString summary = missed.size() == 1 ? QStringLiteral("\"%1\" was not fetched: %2.").arg(first, reason)
                                         : QStringLiteral("%L1 files were not fetched, the first one \"%2\": %3.")
                                               .arg(static_cast<qulonglong>(missed.size()))
                                               .arg(first, reason);
    if (Kept().empty()) return summary;
    return summary +
           (Kept().size() == 1 ? QStringLiteral("\nThe other file was saved in ")
                               : QStringLiteral("\nThe others were saved in ")) +
           folder;
}

void CDownloadProgressDlg::reject() {
    if (m_run && m_state != State::Finished) {
        m_run->Stop();
        GiveFolder(std::nullopt);
        m_catalog.Session().Cancel();
        m_state = State::Cancelling;
        Finish();
        return;
    }
    CQuillaryDialog::reject();
}

bool CDownloadProgressDlg::Commit() { return m_state == State::Finished; }

void CDownloadProgressDlg::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        AskToCancel();
    } else {
        CQuillaryDialog::keyPressEvent(event);
    }
}

}  // namespace quillary
