#include "app/NoDatabasesPage.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace quillary {

CNoDatabasesPage::CNoDatabasesPage(const QString& folder, const std::function<void()>& create) {
    QString example = QDir(folder).filePath(QStringLiteral("things.pdb"));
    if (example.contains(QRegularExpression(QStringLiteral("[^A-Za-z0-9_./-]")))) {
        example = u'\'' + example.replace(QStringLiteral("'"), QStringLiteral("'\\''")) + u'\'';
    }
    enum class Look { Heading, Text, Command, Button };
    const struct {
        Look look;
        QString text;
    } kLines[] = {
        {Look::Heading, QStringLiteral("No databases yet")},
        {Look::Text, QStringLiteral("The databases in %1 and on storage cards show here.").arg(folder)},
        {Look::Button, {}},
        {Look::Text, QStringLiteral("To make one of a table, type in a terminal:")},
        {Look::Command, QStringLiteral("qly import table.csv %1").arg(example)},
        {Look::Text, QStringLiteral("A database that you have downloaded: put it into that folder, or open it where it "
                                    "is with Open Other...")},
    };
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setBackgroundRole(QPalette::Base);
    auto* lines = new QVBoxLayout;
    lines->addStretch(1);
    const int gap = fontMetrics().height();
    for (const auto& line : kLines) {
        if (line.look == Look::Button) {
            auto* button = new QPushButton(QStringLiteral("New &Database..."));
            button->setAutoDefault(true);  // Return presses it
            connect(button, &QPushButton::clicked, this, create);
            lines->addSpacing(gap / 2);
            lines->addWidget(button, 0, Qt::AlignLeft);
            setFocusProxy(button);
            continue;
        }
        auto* label = new QLabel(line.text);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        QFont font = label->font();
        if (line.look == Look::Heading) {
            font.setPointSizeF(QFontInfo(font).pointSizeF() * 1.4);
        } else if (line.look == Look::Command) {
            font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
            label->setIndent(gap);
        } else {
            lines->addSpacing(gap / 2);
        }
        label->setFont(font);
        lines->addWidget(label);
    }
    lines->addStretch(2);
    // A column in the middle, as wide as lines are easy to read.
    auto* column = new QWidget;
    column->setLayout(lines);
    column->setMaximumWidth(96 * fontMetrics().averageCharWidth());
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->addStretch(1);
    row->addWidget(column, 100);
    row->addStretch(1);
    setWidget(content);
}

}  // namespace quillary
