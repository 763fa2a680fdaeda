#include "app/RecordBar.h"

#include <QLabel>
#include <QToolButton>

#include "ui/CommandActions.h"
#include "ui/ControlInfo.h"
#include "ui/ToolBars.h"
#include "ui/ToolTip.h"

namespace quillary {

CRecordBar::CRecordBar(CCommandActions& actions, const std::function<void()>& ok) : m_counter(new QLabel) {
    setObjectName(QString::number(kToolBarDatabase));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setIconSize(QSize(16, 16));
    actions.FillToolBar(*this, kToolBarDatabase);
    auto* gap = new QWidget;
    gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(gap);
    m_counter->setObjectName(QString::number(kRecordCounter));
    m_counter->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const int margin = fontMetrics().averageCharWidth();
    m_counter->setContentsMargins(margin, 0, margin, 0);
    addWidget(m_counter);
    auto* close = new QToolButton;
    close->setObjectName(QString::number(kOkButton));
    close->setText(QStringLiteral("ok"));
    close->setToolTip(QStringLiteral("Close the database"));
    connect(close, &QToolButton::clicked, this, ok);
    addWidget(close);
    close->setAutoRaise(false);  // which the bar has set
}

void CRecordBar::ShowCounter(int current, int total, int hidden) {
    m_counter->setText(QStringLiteral("%1 of %2").arg(current).arg(total));
    const QString word = hidden > 0 ? QStringLiteral("%1 records are hidden").arg(hidden) : QString();
    SetPlainToolTip(*m_counter, word);
    m_counter->setAccessibleName(m_counter->text());
}

}  // namespace quillary
