#include "app/StartPage.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillary {

CStartPage::CStartPage(const std::function<void()>& open)
    : m_open(new QPushButton(QStringLiteral("&Open Database..."))) {
    auto* text = new QLabel(QStringLiteral("No database is open."));
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    m_open->setAutoDefault(true);  // Return opens, too
    connect(m_open, &QPushButton::clicked, this, open);
    setFocusProxy(m_open);

    auto* column = new QVBoxLayout(this);
    column->addStretch(2);
    column->addWidget(text);
    column->addSpacing(fontMetrics().height() / 2);
    column->addWidget(m_open, 0, Qt::AlignCenter);
    column->addStretch(3);
}

}  // namespace quillary
