#include "ui/HelpBook.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBrowser>
#include <QToolTip>
#include <QVBoxLayout>

#include "ui/HelpTopics.h"

namespace quillary {

namespace {

constexpr int kColumnCharacters = 72;

}  // namespace

CHelpBook::CHelpBook() : m_page(new QTextBrowser), m_search(new QLineEdit) {
    setWindowTitle(QStringLiteral("Quillary Help"));
    setObjectName(QStringLiteral("help"));
    auto* contents = new QPushButton(QStringLiteral("&Contents"));
    connect(contents, &QPushButton::clicked, this, [this] { ShowTopic(kTopicContents); });
    m_search->setPlaceholderText(QStringLiteral("Search"));
    m_search->setAccessibleName(QStringLiteral("Search"));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::returnPressed, this, &CHelpBook::FindNext);
    auto* next = new QPushButton(QStringLiteral("Find &Next"));
    connect(next, &QPushButton::clicked, this, &CHelpBook::FindNext);

    auto* bar = new QHBoxLayout;
    bar->addWidget(contents);
    bar->addWidget(m_search, 1);
    bar->addWidget(next);
    // On a small screen the search box needs the room.
    for (QPushButton* button : {contents, next}) {
        button->setMinimumWidth(fontMetrics().horizontalAdvance(button->text()) + fontMetrics().height());
    }
    m_page->setOpenLinks(true);
    m_page->setAccessibleName(QStringLiteral("Help"));
    m_page->document()->setDocumentMargin(fontMetrics().height());
    m_page->setSource(QUrl(QStringLiteral("qrc:/help/Quillary.htm")));
    auto* column = new QVBoxLayout(this);
    column->addLayout(bar);
    column->addWidget(m_page, 1);
    const int line = fontMetrics().height();
    resize(QSize(kColumnCharacters * fontMetrics().averageCharWidth() + 3 * line, 36 * line)
               .boundedTo(screen()->availableSize() * 9 / 10));
}

void CHelpBook::ShowTopic(std::string_view topic) {
    show();
    raise();
    activateWindow();
    m_page->scrollToAnchor(QString::fromLatin1(topic.data(), static_cast<qsizetype>(topic.size())));
    m_page->setFocus();
}

void CHelpBook::FindNext() {
    const QString text = m_search->text();
    if (text.isEmpty() || m_page->find(text)) return;
    const QTextCursor place = m_page->textCursor();
    const int shown = m_page->verticalScrollBar()->value();
    m_page->moveCursor(QTextCursor::Start);
    if (m_page->find(text)) return;
    m_page->setTextCursor(place);
    m_page->verticalScrollBar()->setValue(shown);
    QToolTip::showText(m_search->mapToGlobal(QPoint(0, m_search->height())), QStringLiteral("Not found"), m_search);
}

void CHelpBook::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (event->matches(QKeySequence::Find)) {
        m_search->setFocus();
    } else if (event->matches(QKeySequence::FindNext)) {
        FindNext();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace quillary
