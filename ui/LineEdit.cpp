#include "ui/LineEdit.h"

#include <algorithm>

#include "ui/WideText.h"

namespace quillary {

namespace {

bool IsLineEnd(QChar c) { return c == u'\n' || c == u'\r'; }

QString OneLineOf(QString text) {
    while (!text.isEmpty() && IsLineEnd(text.back())) text.chop(1);
    text.remove(0, std::find_if_not(text.begin(), text.end(), IsLineEnd) - text.begin());
    return OnOneLine(text);
}

}  // namespace

CLineEdit::CLineEdit(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::textEdited, this, &CLineEdit::Clean);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) { m_before = text; });
}

void CLineEdit::Clean(const QString& edited) {
    const qsizetype most = std::min(edited.size(), m_before.size());
    const auto [own, before] = std::mismatch(edited.begin(), edited.begin() + most, m_before.begin());
    const qsizetype first = own - edited.begin();
    const auto [last, end] = std::mismatch(edited.rbegin(), edited.rbegin() + (most - first), m_before.rbegin());
    const qsizetype length = last.base() - edited.begin() - first;
    const QString inserted = edited.mid(first, length);
    const QString clean = OneLineOf(inserted);
    if (clean == inserted) return;
    setSelection(static_cast<int>(first), static_cast<int>(length));
    insert(clean);
}

}  // namespace quillary
