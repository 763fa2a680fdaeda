#include "remote/RemoteSearchDlg.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "db/AnsiText.h"
#include "db/Messages.h"
#include "db/Utf.h"
#include "remote/CatalogueCategories.h"
#include "remote/RemoteCatalog.h"
#include "remote/RemoteRequestBox.h"
#include "ui/HelpTopics.h"
#include "ui/Mnemonics.h"
#include "ui/TextEdit.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kCategory = 1002;
constexpr int kText = 1005;
constexpr int kTextLines = 3;
constexpr DialogInfo kDialog{203, u"Remote DB Search", {}, kTopicRemoteSearch};

}  // namespace

CRemoteSearchDlg::CRemoteSearchDlg(CRemoteCatalog& catalog, const AnsiText& page, Search search, FrameWindow& frame)
    : CRemoteSearchDlg(catalog, page, std::move(search), frame, new QWidget) {}

CRemoteSearchDlg::CRemoteSearchDlg(CRemoteCatalog& catalog, const AnsiText& page, Search search, FrameWindow& frame,
                                   QWidget* content)
    : CQuillaryDialog(kDialog, *content, frame),
      m_catalog(catalog),
      m_page(page),
      m_search(std::move(search)),
      m_text(new CTextEdit),
      m_category(new QComboBox) {
    m_text->setFixedHeight(kTextLines * m_text->fontMetrics().lineSpacing() + fontMetrics().height());
    m_text->installEventFilter(this);
    for (const std::string_view category : kCatalogueCategories) m_category->addItem(FromUtf8(category));

    auto* column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 2);
    const QStringList names = {QStringLiteral("Search Text"), QStringLiteral("Category")};
    const QStringList labels = WithMnemonics(names);
    const auto add = [&](QWidget& editor, int id, qsizetype name) {
        editor.setObjectName(QString::number(id));
        editor.setAccessibleName(names[name]);
        auto* label = new QLabel(labels[name]);
        label->setBuddy(&editor);
        column->addWidget(label);
        column->addWidget(&editor);
    };
    add(*m_text, kText, 0);
    add(*m_category, kCategory, 1);
}

void CRemoteSearchDlg::Load() {
    m_text->SetText(m_search.text);
    m_category->setCurrentIndex(m_search.category);
}

void CRemoteSearchDlg::FocusFirst() {
    m_text->selectAll();
    m_text->setFocus();
    RaisePanel();
}

// In the editor too, Return searches; with Shift it breaks the line.
bool CRemoteSearchDlg::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_text || event->type() != QEvent::KeyPress) return CQuillaryDialog::eventFilter(watched, event);
    const auto& key = static_cast<QKeyEvent&>(*event);
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!isReturn || key.modifiers() & Qt::ShiftModifier) return CQuillaryDialog::eventFilter(watched, event);
    if (!key.isAutoRepeat()) accept();
    return true;
}

bool CRemoteSearchDlg::Commit() {
    m_search = {m_text->Text(), m_category->currentIndex()};
    std::u16string lacking;
    auto title = m_page.FromWideToSend(ToWide(m_search.text), &lacking);
    if (!title) return Refuse(kText, FromUtf8(FormatMessage(Message::NotSearchable, {WideToUtf8(lacking)})));
    m_catalog.SetQuery(std::move(*title), CategoryToAskFor(m_category->currentText().toStdString()));
    const RequestEnd end = RunRequest(m_catalog, Frame(), QStringLiteral("Searching the catalogue..."),
                                      [](CRemoteCatalog& catalog) { return catalog.Search(); });
    if (!m_catalog.Results().empty()) return end != RequestEnd::Stopped;
    if (end != RequestEnd::Stopped) TellNoResults(m_catalog, Frame());
    m_text->setFocus();
    return false;
}

}  // namespace quillary
