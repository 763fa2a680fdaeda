#include "ui/TextEdit.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QTextCursor>
#include <algorithm>

#include "ui/Mnemonics.h"

namespace quillary {

namespace {

// Inside a QTextDocument a carriage return would become a line break, and the separator of its lines is a character
// of its own. These two stand for what a text itself has of them; they are no characters, so no text holds them.
constexpr char16_t kCarriageReturn = 0xFDD2;
constexpr char16_t kSeparator = 0xFDD3;

// Finding where to break a word takes the toolkit the square of its length: a minute for a million letters.
constexpr int kLongestWord = 10'000;

QString ToDocument(QString text) {
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        const QChar c = text.at(i);
        if (c == u'\r' && (i + 1 == size || text.at(i + 1) != u'\n')) text[i] = QChar(kCarriageReturn);
        if (c == QChar::ParagraphSeparator) text[i] = QChar(kSeparator);
    }
    return text;
}

QString FromDocument(const QString& raw, QLatin1StringView lineEnd) {
    QString text;
    text.reserve(raw.size() + raw.count(QChar::ParagraphSeparator));
    for (const QChar c : raw) {
        if (c == QChar::ParagraphSeparator) {
            text += lineEnd;
        } else if (c == QChar(kCarriageReturn)) {
            text += u'\r';
        } else {
            text += c == QChar(kSeparator) ? QChar(QChar::ParagraphSeparator) : c;
        }
    }
    return text;
}

bool HasLongWord(const QString& text) {
    int length = 0;
    return std::any_of(text.begin(), text.end(), [&length](QChar c) {
        length = c.isSpace() ? 0 : length + 1;
        return length > kLongestWord;
    });
}

}  // namespace

CTextEdit::CTextEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void CTextEdit::SetText(const QString& text) {
    clear();  // a long word of the old text would be laid out anew in the other mode
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    ChooseWrapping(text);
    setPlainText(ToDocument(text));
}

QString CTextEdit::Text() const { return FromDocument(document()->toRawText(), QLatin1StringView("\r\n")); }

void CTextEdit::ChooseWrapping(const QString& added) {
    if (HasLongWord(added)) setWordWrapMode(QTextOption::WrapAnywhere);
}

QString CTextEdit::Capitalized(const QString& typed) const {
    const bool empty = document()->characterCount() - 1 == textCursor().selectedText().size();
    // A micro sign begins a unit; its capital is a Greek letter.
    if (!m_capitalize || !empty || typed.size() != 1 || typed.front() == u'\u00B5') return typed;
    return QString(typed.front().toUpper());
}

// The style marks the focus in the frames of other editors only, and read only there is no caret either.
bool CTextEdit::event(QEvent* event) {
    const bool handled = QPlainTextEdit::event(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::FocusIn || type == QEvent::FocusOut) update();
    if (type == QEvent::FocusIn) m_pressed = false;
    if (type == QEvent::Paint && hasFocus()) {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    return handled;
}

void CTextEdit::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    m_pressed = m_pressed || !event->isAutoRepeat();
    if (isReturn && !m_pressed) return;  // the rest of one that was held down to come here
    if (isReturn && event->modifiers() & Qt::ControlModifier) return event->ignore();  // the page's OK
    const QString typed = event->text();
    const QString capital = typed.isEmpty() || !typed.front().isLetter() ? typed : Capitalized(typed);
    if (isReturn && event->modifiers() & Qt::ShiftModifier && !isReadOnly()) {
        // The toolkit's own character for a line break inside a paragraph is not for files.
        textCursor().insertBlock();
        ensureCursorVisible();
    } else if (capital != typed) {
        QKeyEvent upper(event->type(), event->key(), event->modifiers(), capital);
        QPlainTextEdit::keyPressEvent(&upper);
        event->setAccepted(upper.isAccepted());
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

// Composed characters and those of a keyboard on the screen come this way.
void CTextEdit::inputMethodEvent(QInputMethodEvent* event) {
    const QString typed = event->commitString();
    const QString capital = Capitalized(typed);
    if (capital != typed) event->setCommitString(capital, event->replacementStart(), event->replacementLength());
    QPlainTextEdit::inputMethodEvent(event);
}

void CTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    const bool selected = textCursor().hasSelection();
    const bool writable = !isReadOnly();
    const struct {
        QString text;
        bool enabled;
        void (QPlainTextEdit::*act)();
    } kItems[] = {
        {QStringLiteral("Undo"), writable && document()->isUndoAvailable(), &QPlainTextEdit::undo},
        {QStringLiteral("Cut"), writable && selected, &QPlainTextEdit::cut},
        {QStringLiteral("Copy"), selected, &QPlainTextEdit::copy},
        {QStringLiteral("Paste"), writable && canPaste(), &QPlainTextEdit::paste},
        {QStringLiteral("Select All"), !document()->isEmpty(), &QPlainTextEdit::selectAll},
    };
    QStringList texts;
    for (const auto& item : kItems) texts << item.text;
    texts = WithMnemonics(texts);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const auto& item : kItems) {
        menu->addAction(texts.takeFirst(), this, item.act)->setEnabled(item.enabled);
    }
    menu->popup(event->reason() == QContextMenuEvent::Mouse ? event->globalPos()
                                                            : viewport()->mapToGlobal(cursorRect().bottomLeft()));
}

QMimeData* CTextEdit::createMimeDataFromSelection() const {
    const QString selected = textCursor().selectedText();
    // A carriage return of its own, before a bare LF, would be pasted as a part of that.
    const bool bare = !selected.contains(QChar(kCarriageReturn));
    auto* data = new QMimeData;
    data->setText(FromDocument(selected, QLatin1StringView(bare ? "\n" : "\r\n")));
    return data;
}

void CTextEdit::insertFromMimeData(const QMimeData* source) {
    if (isReadOnly() || !source->hasText()) return;
    ChooseWrapping(source->text());
    textCursor().insertText(ToDocument(source->text()));
    ensureCursorVisible();
}

}  // namespace quillary
