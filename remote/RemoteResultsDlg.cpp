#include "remote/RemoteResultsDlg.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "db/AnsiText.h"
#include "remote/RemoteCatalog.h"
#include "remote/RemoteInfoDlg.h"
#include "remote/RemoteRequestBox.h"
#include "remote/RemoteResultsView.h"
#include "ui/CommandIds.h"
#include "ui/FlowLayout.h"
#include "ui/HelpTopics.h"
#include "ui/Mnemonics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kList = 1017;
constexpr int kStatus = 1058;
constexpr DialogInfo kDialog{205, u"DB Search Results", {}, kTopicRemoteResults};

}  // namespace

CRemoteResultsDlg::CRemoteResultsDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame)
    : CRemoteResultsDlg(catalog, place, frame, new QWidget, new CRemoteResultsView(catalog, place.page)) {}

CRemoteResultsDlg::CRemoteResultsDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame,
                                     QWidget* bar, CRemoteResultsView* list)
    : CQuillaryDialog(kDialog, bar, Centered(*list), frame),
      m_catalog(catalog),
      m_place(place),
      m_list(list),
      m_status(new QLabel),
      m_next(new QPushButton),
      m_newSearch(new QPushButton),
      m_information(new QPushButton) {
    m_status->setObjectName(QString::number(kStatus));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    list->setObjectName(QString::number(kList));
    list->setAccessibleName(QStringLiteral("Results"));
    list->onOpen = [this](CRemoteResult& package) { OnOpen(package); };
    connect(list, &QTreeWidget::itemSelectionChanged, this, &CRemoteResultsDlg::ShowState);

    auto* above = new QVBoxLayout(bar);
    above->setContentsMargins({});
    auto* buttons = new CFlowLayout;
    above->addLayout(buttons);
    above->addWidget(m_status);
    const struct {
        QPushButton* button;
        int command;
        QString text;
        void (CRemoteResultsDlg::*run)();
    } kButtons[] = {
        {m_next, ID_RESULTS_NEXT, QStringLiteral("Get Next Results"), &CRemoteResultsDlg::OnGetNextResults},
        {m_newSearch, ID_RESULTS_NEW_SEARCH, QStringLiteral("New Search"), &CRemoteResultsDlg::OnNewSearch},
        {m_information, ID_RESULTS_INFORMATION, QStringLiteral("Information"), &CRemoteResultsDlg::OnInformation},
    };
    QStringList texts;
    for (const auto& row : kButtons) texts << row.text;
    texts = WithMnemonics(texts);
    for (const auto& row : kButtons) {
        row.button->setObjectName(QString::number(row.command));
        row.button->setText(texts.takeFirst());
        row.button->setAutoDefault(false);
        buttons->addWidget(row.button);
        connect(row.button, &QPushButton::clicked, this, row.run);
    }
}

void CRemoteResultsDlg::Load() {
    m_list->Refresh();
    ShowState();
}

void CRemoteResultsDlg::FocusFirst() { m_list->setFocus(); }

void CRemoteResultsDlg::ShowState() {
    const auto held = static_cast<qlonglong>(m_catalog.Results().size());
    m_status->setText(QStringLiteral("Downloaded %1 of %2 results.").arg(held).arg(m_catalog.Total()));
    m_next->setEnabled(m_catalog.HasMore() && held < m_catalog.Total());
    m_information->setEnabled(m_list->Selected() != nullptr);
}

void CRemoteResultsDlg::OnGetNextResults() {
    const std::size_t before = m_catalog.Results().size();
    const RequestEnd end = RunRequest(m_catalog, Frame(), QStringLiteral("Fetching more results..."),
                                      [](CRemoteCatalog& catalog) { return catalog.Search(); });
    m_list->Refresh();
    ShowState();
    m_list->setFocus();
    if (end != RequestEnd::Stopped && m_catalog.Results().size() == before) TellNoResults(m_catalog, Frame());
}

void CRemoteResultsDlg::OnNewSearch() { done(ID_RESULTS_NEW_SEARCH); }

void CRemoteResultsDlg::OnInformation() {
    CRemoteResult* result = m_list->Selected();
    if (!result) return;
    const RequestEnd end = RunRequest(m_catalog, Frame(), QStringLiteral("Fetching the information..."),
                                      [result](CRemoteCatalog& catalog) { return catalog.FetchDetails(*result); });
    if (end == RequestEnd::Failed) TellNoResults(m_catalog, Frame());
    if (end == RequestEnd::Through) {
        const std::string text = result->details ? InformationText(*result->details) : std::string();
        CRemoteInfoDlg(FromWide(m_place.page.ToWide(text)), Frame()).exec();
    }
    m_list->setFocus();
}

void CRemoteResultsDlg::OnOpen(CRemoteResult& package) {
    const RequestEnd end = RunRequest(m_catalog, Frame(), QStringLiteral("Fetching the package's contents..."),
                                      [&package](CRemoteCatalog& catalog) { return catalog.FetchPackage(package); });
    m_list->Refresh();
    if (!package.hasFetchedFiles) m_list->Close(package);
    if (end == RequestEnd::Failed) TellNoResults(m_catalog, Frame());
    m_list->setFocus();
}

bool CRemoteResultsDlg::Commit() {
    CDownloadProgressDlg progress(m_catalog, m_place, Frame());
    const bool isThrough = progress.exec() == Accepted;
    m_downloaded.insert(m_downloaded.end(), progress.Kept().begin(), progress.Kept().end());
    m_list->Refresh();
    m_list->setFocus();
    return isThrough && !progress.Kept().empty();
}

}  // namespace quillary
